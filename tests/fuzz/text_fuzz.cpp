// Holds the builder and the tokenizer against plain models. The input is a program: one byte an operation,
// one its operand.
#include "tests/fuzz/fuzz.h"
#include "text/speed_str.h"
#include "text/token_string.h"

namespace {

// What the builder's text should be, and whether it has moved to the heap.
struct Model {
    static constexpr std::size_t kInside = 512;
    std::wstring text;
    bool onHeap = false;

    void Become(std::wstring next) {
        text = std::move(next);
        onHeap = !text.empty() && (onHeap || text.size() > kInside);
    }
    // Inside the object, no more units move than are put in front; those behind them stay, or are zero.
    void Prepend(const std::wstring& front) {
        if (onHeap || text.size() + front.size() > kInside) return Become(front + text);
        std::wstring next = text;
        next.resize(text.size() + front.size());
        for (std::size_t i = 0; i < front.size() && i < text.size(); ++i) next[front.size() + i] = text[i];
        Become(next.replace(0, front.size(), front));
    }
};

void Build(Input program) {
    CSpeedStr builder;
    Model model;
    while (!program.empty() && model.text.size() < 4000) {
        const std::uint8_t operation = TakeByte(program), operand = TakeByte(program);
        const std::size_t size = model.text.size(), own = std::min<std::size_t>(operand, size);
        const std::size_t brim = std::max(Model::kInside - 1 + operand % 3, size) - size;
        std::wstring part;
        while (part.size() < (operation & 64 ? brim : operand))
            part += static_cast<wchar_t>(L'a' + (operand + part.size()) % 26);
        const std::wstring_view piece(builder.data() + own, size - own);
        const std::wstring pieceText(piece);
        switch (operation % 8) {
            case 0: builder += part.c_str(), model.Become(model.text + part); break;
            case 1: builder += RWWString(part), model.Become(model.text + part); break;
            case 2: builder += L'x', model.Become(model.text + L'x'); break;
            case 3: builder += builder, model.Become(model.text + model.text); break;
            case 4: builder.trimEnd(operand), model.Become(model.text.substr(0, size - own)); break;
            case 5: builder.append(piece), model.Become(model.text + pieceText); break;
            case 6: builder.prepend(piece), model.Prepend(pieceText); break;
            default: builder.prepend(part), model.Prepend(part);
        }
        Expect(builder.ToString() == std::wstring_view(model.text));
        Expect(builder.length() == model.text.size());
        for (const std::size_t at : {std::size_t{operand}, model.text.size()})
            Expect(builder[static_cast<unsigned>(at)] == (at < model.text.size() ? model.text[at] : L'\0'));
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
    constexpr std::wstring_view kUnits = L" ,\"a\u0080\u20ac";
    std::wstring text;
    while (!program.empty()) text += kUnits[TakeByte(program) % kUnits.size()];
    const std::wstring delimiters = text.substr(0, 2);
    TokenString tokens{RWWString(text), RWWString(delimiters)};
    for (std::size_t at = 0; at < text.size();)
        Expect(tokens.Next() == std::wstring_view(NextToken(text, delimiters, at)));
    for (int times = 0; times < 2; ++times) Expect(tokens.Next().isNull());
    tokens.Init();
    std::size_t start = 0;
    Expect(tokens.Next() == std::wstring_view(NextToken(text, delimiters, start)));
}

}  // namespace

FUZZER(Text, "") {
    Build(input);
    Split(input);
}
