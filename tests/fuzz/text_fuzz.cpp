// Holds the builder and the tokenizer against plain models. The input is a program: one byte an operation,
// one its operand.
#include <cstdint>
#include <string>

#include "tests/fuzz/input.h"
#include "text/speed_str.h"
#include "text/token_string.h"

namespace {

using fuzz::Expect;

class Program {
  public:
    Program(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool AtEnd() const { return at_ == size_; }
    std::uint8_t Byte() { return AtEnd() ? std::uint8_t{0} : data_[at_++]; }
    std::wstring Rest() const {
        std::wstring text;
        for (std::size_t i = at_; i < size_; ++i)
            text += static_cast<wchar_t>(data_[i] < 250 ? data_[i] : 0x20ac);
        return text;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_, at_ = 0;
};

std::wstring Part(std::uint8_t operand) {
    return std::wstring(operand, static_cast<wchar_t>(L'a' + operand % 26));
}

// What is left in the model after a prepend to a text that is still in the object.
std::wstring Prepended(const std::wstring& text, const std::wstring& front) {
    std::wstring result = text;
    result.resize(text.size() + front.size());
    for (std::size_t i = 0; i < front.size() && i < text.size(); ++i) result[front.size() + i] = text[i];
    return result.replace(0, front.size(), front);
}

void Build(Program program) {
    CSpeedStr builder;
    std::wstring model;
    bool onHeap = false;
    while (!program.AtEnd() && model.size() < 4000) {
        const std::uint8_t operation = program.Byte(), operand = program.Byte();
        const std::wstring part = Part(operand);
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
    std::wstring token;
    while (isDelimiter(at)) ++at;
    if (at >= text.size()) return token;
    if (text[at] != L'"') {
        while (at < text.size() && !isDelimiter(at)) token += text[at++];
        return token;
    }
    for (++at; at < text.size() && text[at] != L'"';) token += text[at++];
    ++at;
    return token;
}

void Split(Program program) {
    const std::wstring delimiters{static_cast<wchar_t>(program.Byte()), static_cast<wchar_t>(program.Byte()),
                                  L'\u20ac'};
    const std::wstring text = program.Rest();
    TokenString tokens{RWWString(text), RWWString(delimiters)};
    for (std::size_t at = 0; at < text.size();)
        Expect(tokens.Next() == std::wstring_view(NextToken(text, delimiters, at)));
    Expect(tokens.Next().isNull());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Program program(data, size);
    Build(program);
    Split(program);
    return 0;
}
