#include "text/ansi_text.h"
#include "text/fields.h"
#include "text/letter_case.h"
#include "text/script_text.h"
#include "text/token_string.h"
#include "text/xml_char_ref.h"
#include "tools/qlutil/command.h"

namespace {

Record Result(RWWString text) {
    return {{L"result", std::move(text)}};
}

constexpr int kFirstCase = 1;
constexpr int kLastCase = 7;

Answer Case(const Arguments& arguments) {
    const int type = RequireInt(arguments[0], L"TYPE");
    if (type < kFirstCase || type > kLastCase) throw WrongCall(L"TYPE must be 1 to 7");
    return Result(ChangeCase(arguments[1], static_cast<CaseType>(type)));
}

Answer CaseOf(const Arguments& arguments) {
    return Record{{L"type", static_cast<int>(GetCase(arguments[0]))}};
}

Answer ToScriptName(const Arguments& arguments) {
    return Result(QLToJSVarName(arguments[0], arguments.count() > 1 ? arguments[1] : std::wstring_view()));
}

Answer FromScriptName(const Arguments& arguments) {
    return Result(JSToQLVarName(arguments[0]));
}

// What stands for the special characters when the call does not say: the usual escapes of each world.
struct EscapeTexts {
    const wchar_t* newline;
    const wchar_t* crLf;
    const wchar_t* apostrophe;
    const wchar_t* quote;
};
constexpr EscapeTexts kScriptTexts = {L"\\n", L"\\r\\n", L"\\'", L"\\\""};
constexpr EscapeTexts kMarkupTexts = {L"\n", L"\r\n", L"&#39;", L"&quot;"};

Answer Escape(const Arguments& arguments) {
    const bool markup = arguments.Has(L"markup");
    const EscapeTexts& usual = markup ? kMarkupTexts : kScriptTexts;
    const auto given = [&](const wchar_t* name, std::wstring_view otherwise) {
        return arguments.Value(name).value_or(otherwise);
    };
    return Result(EscapeIllegalChars(arguments[0], given(L"newline", usual.newline),
                                     given(L"crlf", usual.crLf), given(L"apostrophe", usual.apostrophe),
                                     markup, given(L"quote", usual.quote)));
}

Answer Tokens(const Arguments& arguments) {
    TokenString text(arguments[1], arguments[0]);
    List tokens;
    for (RWWString token = text.Next(); !token.isNull(); token = text.Next()) tokens.emplace_back(token);
    return Record{{L"tokens", std::move(tokens)}};
}

Answer Ansi(const Arguments& arguments) {
    return Result(MakeRWTStringAnsiOnly(arguments[0]));
}

Answer CharRef(const Arguments& arguments) {
    const RWWString text = arguments[0];
    const wchar_t* cursor = text.data();
    unsigned long value = 0;
    const bool found = IsXmlCharEntityRefW(&cursor, &value);
    Record record = {{L"found", found}, {L"value", value}, {L"rest", cursor}};
    if (found) return record;
    return Answer(std::move(record),
                  L"no numeric character reference at the start of \"" + text.str() + L"\"");
}

Answer Split(const Arguments& arguments) {
    RWWString name, rest;
    SplitField(arguments[0], name, rest);
    return Record{{L"name", name}, {L"rest", rest}};
}

Answer Bool(const Arguments& arguments) {
    const std::wstring_view word = arguments[1];
    if (word != L"true" && word != L"false") throw WrongCall(L"DEFAULT must be true or false");
    return Record{{L"value", StrToBool(arguments[0], word == L"true")}};
}

constexpr SwitchRow kEscapeSwitches[] = {
    {L"markup"}, {L"newline", true}, {L"crlf", true}, {L"apostrophe", true}, {L"quote", true}};

constexpr Command kCommands[] = {
    {L"text case",
     L"TYPE TEXT",
     L"TEXT in a case: 1 lower, 2 sentence, 3 title, 4 capitals, 5 first capital, 6 spaced capitals, 7 as it "
     L"is.",
     {},
     2,
     2,
     Case},
    {L"text case-of", L"TEXT", L"The case that TEXT is in, as a number of \"text case\".", {}, 1, 1, CaseOf},
    {L"text js", L"NAME [PREFIX]", L"The script identifier for a variable's name.", {}, 1, 2, ToScriptName},
    {L"text unjs",
     L"NAME",
     L"The variable's name that a script identifier stands for.",
     {},
     1,
     1,
     FromScriptName},
    {L"text escape", L"[--markup] [--newline T] [--crlf T] [--apostrophe T] [--quote T] TEXT",
     L"TEXT made safe inside a quoted script string, or inside markup; the switches say what stands for "
     L"each.",
     kEscapeSwitches, 1, 1, Escape},
    {L"text tokens", L"DELIMITERS TEXT", L"The tokens of TEXT up to the first empty one.", {}, 2, 2, Tokens},
    {L"text ansi", L"TEXT", L"TEXT with what the ANSI code page cannot hold replaced.", {}, 1, 1, Ansi},
    {L"text charref", L"TEXT", L"The numeric character reference at the start of TEXT.", {}, 1, 1, CharRef},
    {L"text split", L"TEXT", L"TEXT split at its first colon.", {}, 1, 1, Split},
    {L"text bool",
     L"TEXT DEFAULT",
     L"The truth value that TEXT stands for, else DEFAULT (true or false).",
     {},
     2,
     2,
     Bool},
};

}  // namespace

std::span<const Command> TextCommands() {
    return kCommands;
}
