// Texts to the ANSI code page and back, beside the bare system calls, which answer strings of their own like
// the library, each made at the right size.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "platform/win32.h"
#include "rw/wide_string.h"
#include "text/ansi_text.h"

namespace {

constexpr std::size_t kSmall = 1 << 10;
constexpr std::size_t kLarge = 1 << 20;

// Prose in which about every thirtieth letter is not ASCII; some are not in the code page.
std::wstring Prose(std::size_t bytes) {
    constexpr std::wstring_view kSentence =
        L"The undersigned, Ren\u00e9e M\u00fcller, pays \u20ac 1,000 to \u0141ukasz. ";
    std::wstring text;
    while (text.size() < bytes / sizeof(char16_t)) text += kSentence;
    text.resize(bytes / sizeof(char16_t));
    return text;
}

std::wstring Ascii(std::size_t bytes) {
    return std::wstring(bytes / sizeof(char16_t), L'x');
}

int Narrow(const std::wstring& wide, std::string& narrow, const char* defaultCharacter = nullptr) {
    return ::WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), narrow.data(),
                                 static_cast<int>(narrow.size()), defaultCharacter, nullptr);
}

int Widen(const std::string& narrow, std::wstring& wide) {
    return ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, narrow.data(), static_cast<int>(narrow.size()),
                                 wide.data(), static_cast<int>(wide.size()));
}

template <class RoundTrip>
void Run(benchmark::State& state, const std::wstring& text, RoundTrip roundTrip) {
    for (auto _ : state) {
        if (roundTrip(text) != text.size()) throw std::logic_error("the text was not converted");
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size() * sizeof(text[0])));
}

template <std::wstring Text(std::size_t), std::size_t kBytes>
void Ours(benchmark::State& state) {
    const RWWString source(Text(kBytes));
    Run(state, source.str(),
        [&](const std::wstring&) { return RWCStringToRWWString(RWTStringToRWCString(source)).length(); });
}

template <std::wstring Text(std::size_t), std::size_t kBytes, bool kNamesDefault = false>
void BareCalls(benchmark::State& state) {
    Run(state, Text(kBytes), [](const std::wstring& text) {
        std::string narrow(text.size(), '\0');
        Narrow(text, narrow, kNamesDefault ? "?" : nullptr);
        std::wstring wide(narrow.size(), L'\0');
        return static_cast<std::size_t>(Widen(narrow, wide));
    });
}

// The same into texts that are kept.
template <std::wstring Text(std::size_t), std::size_t kBytes>
void OursKept(benchmark::State& state) {
    std::string narrow;
    RWWString wide;
    Run(state, Text(kBytes), [&](const std::wstring& text) {
        WideToAnsi(text, narrow);
        AnsiToWide(narrow, wide);
        return wide.length();
    });
}

template <std::wstring Text(std::size_t), std::size_t kBytes>
void BareCallsKept(benchmark::State& state) {
    std::string narrow;
    std::wstring wide;
    Run(state, Text(kBytes), [&](const std::wstring& text) {
        narrow.resize(text.size());
        Narrow(text, narrow);
        wide.resize(narrow.size());
        return static_cast<std::size_t>(Widen(narrow, wide));
    });
}

BENCHMARK(Ours<Prose, kSmall>)->Name("ansi 1 KB/ours");
BENCHMARK(BareCalls<Prose, kSmall>)->Name("ansi 1 KB/bare calls");
BENCHMARK(BareCalls<Prose, kSmall, true>)->Name("ansi 1 KB/bare calls, ?");
BENCHMARK(Ours<Prose, kLarge>)->Name("ansi 1 MB/ours");
BENCHMARK(BareCalls<Prose, kLarge>)->Name("ansi 1 MB/bare calls");
BENCHMARK(BareCalls<Prose, kLarge, true>)->Name("ansi 1 MB/bare calls, ?");
BENCHMARK(Ours<Ascii, kSmall>)->Name("ansi ascii 1 KB/ours");
BENCHMARK(BareCalls<Ascii, kSmall>)->Name("ansi ascii 1 KB/bare calls");
BENCHMARK(Ours<Ascii, kLarge>)->Name("ansi ascii 1 MB/ours");
BENCHMARK(BareCalls<Ascii, kLarge>)->Name("ansi ascii 1 MB/bare calls");
BENCHMARK(OursKept<Prose, kSmall>)->Name("ansi, kept texts 1 KB/ours");
BENCHMARK(BareCallsKept<Prose, kSmall>)->Name("ansi, kept texts 1 KB/bare calls");
BENCHMARK(OursKept<Prose, kLarge>)->Name("ansi, kept texts 1 MB/ours");
BENCHMARK(BareCallsKept<Prose, kLarge>)->Name("ansi, kept texts 1 MB/bare calls");
BENCHMARK(OursKept<Ascii, kSmall>)->Name("ansi ascii, kept texts 1 KB/ours");
BENCHMARK(BareCallsKept<Ascii, kSmall>)->Name("ansi ascii, kept texts 1 KB/bare calls");
BENCHMARK(OursKept<Ascii, kLarge>)->Name("ansi ascii, kept texts 1 MB/ours");
BENCHMARK(BareCallsKept<Ascii, kLarge>)->Name("ansi ascii, kept texts 1 MB/bare calls");

}  // namespace
