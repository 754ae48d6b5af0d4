// Holds the builder and the tokenizer against plain models. The input is a program: one byte an operation,
// one its operand.
#include "tests/fuzz/fuzz.h"
#include "text/speed_str.h"
#include "text/token_string.h"

namespace {

// What is left in the model after a prepend to a text that is still in the object.
std::wstring Prepended(const std::wstring& text, const std::wstring& front) {
    std::wstring result = text;
    result.resize(text.size() + front.size());
    for (std::size_t i = 0; i < front.size() && i < text.size(); ++i) result[front.size() + i] = text[i];
    return result.replace(0, front.size(), front);
}

void Build(Input program) {
    CSpeedStr builder;
    std::wstring model;
    bool onHeap = false;
    while (!program.empty() && model.size() < 4000) {
        const std::uint8_t operation = TakeByte(program), operand = TakeByte(program);
        const std::wstring part(operand, static_cast<wchar_t>(L'a' + operand % 26));
        switch (operation % 6) {
            case 0: builder += part.c_str(), model += part; break;
            case 1: builder += RWWString(part), model += part; break;
            case 2: builder += L'x', model += L'x'; break;
            case 3: builder += builder, model += std::wstring(model); break;
            case 4:
                builder.prepend(part.c_str());
                model = onHeap || model.size() + part.size() > 512 ? part + model : Prepended(model, part);
                break;
            case 5:
                builder.trimEnd(operand);
                model.resize(model.size() - std::min<std::size_t>(operand, model.size()));
                if (model.empty()) onHeap = false;
                break;
        }
        onHeap = onHeap || model.size() > 512;
        Expect(builder.ToString() == std::wstring_view(model) && builder.length() == model.size());
        Expect(builder.data()[builder.length()] == L'\0');
    }
}

// The next token by the plainest reading of the text.
std::wstring NextToken(const std::wstring& text, const std::wstring& delimiters, std::size_t& at) {
    const auto isDelimiter = [&](std::size_t i) {
        return i < text.size() && delimiters.find(text[i]) != std::wstring::npos;
    };
    while (isDelimiter(at)) ++at;
    const bool isQuoted = at < text.size() && text[at] == L'"';
    std::wstring token;
    for (at += isQuoted; at < text.size() && (isQuoted ? text[at] != L'"' : !isDelimiter(at));)
        token += text[at++];
    at += isQuoted;
    return token;
}

void Split(Input program) {
    const std::wstring delimiters{static_cast<wchar_t>(TakeByte(program)),
                                  static_cast<wchar_t>(TakeByte(program)), L'\u20ac'};
    std::wstring text(program.begin(), program.end());
    for (wchar_t& unit : text) unit = unit < 250 ? unit : L'\u20ac';
    TokenString tokens{RWWString(text), RWWString(delimiters)};
    for (std::size_t at = 0; at < text.size();)
        Expect(tokens.Next() == std::wstring_view(NextToken(text, delimiters, at)));
    Expect(tokens.Next().isNull());
}

}  // namespace

void Try(Input input) {
    Build(input);
    Split(input);
}
