#include "text/ansi_text.h"

#ifdef _WIN32
#include <emmintrin.h>
#endif

#include <array>
#include <atomic>
#include <bit>
#include <climits>
#include <numeric>
#include <string_view>

#include "platform/failure.h"
#include "platform/win32.h"
#include "text/unicode.h"

namespace {

#ifdef _WIN32
constexpr std::size_t kBlock = 16;

// ASCII is the same in every ANSI code page, and most texts hold little else: each moves a block of it, and
// answers a bit for each unit that is no ASCII and was not converted.
unsigned MoveAsciiBlock(const wchar_t* units, char* bytes) {
    const auto* const from = reinterpret_cast<const __m128i*>(units);
    const __m128i low = _mm_loadu_si128(from), high = _mm_loadu_si128(from + 1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(low, high));
    const auto isAscii = [](__m128i eight) {
        return _mm_cmpeq_epi16(_mm_and_si128(eight, _mm_set1_epi16(-0x80)), _mm_setzero_si128());
    };
    return 0xFFFFu ^ static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(isAscii(low), isAscii(high))));
}

unsigned MoveAsciiBlock(const char* bytes, wchar_t* units) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    auto* const to = reinterpret_cast<__m128i*>(units);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(block, _mm_setzero_si128()));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(block, _mm_setzero_si128()));
    return static_cast<unsigned>(_mm_movemask_epi8(block));
}
#endif

bool IsAscii(wchar_t unit) {
    return static_cast<char32_t>(unit) < 0x80;
}
bool IsAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

// The number of bytes: written, or needed when there is no room to write to; 0 when the system refuses. The
// default character of every ANSI code page is "?": with one of the caller's the system converts several
// times slower, and for UTF-8 not at all.
std::size_t Convert(std::wstring_view text, char* bytes, std::size_t room) {
    if (text.size() > INT_MAX) return 0;
    return static_cast<std::size_t>(::WideCharToMultiByte(CP_ACP, 0, text.data(),
                                                          static_cast<int>(text.size()), bytes,
                                                          static_cast<int>(room), nullptr, nullptr));
}

int ConvertBack(std::string_view bytes, wchar_t* units) {
    const int length = static_cast<int>(bytes.size());
    return ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, units, length);
}

#ifdef _WIN32
constexpr bool kPageStays = true;
#else
constexpr bool kPageStays = false;  // tests change it
#endif

// The ANSI code page as tables, where a character is one byte: the system takes every unit and byte for
// itself there, and several times as long.
class OneBytePage {
  public:
    // Null where characters may have several bytes, where there was no memory at the first call, and until
    // that has filled the tables: nobody waits for a thread that may have ended meanwhile. They stay until
    // the process is gone, since texts are converted as long.
    static const OneBytePage* OfProcess() noexcept {
        enum State { kNew, kTaken, kFilled };
        static constinit OneBytePage page;
        static constinit std::atomic<State> state = kNew;
        State now = state.load(std::memory_order_acquire);
        if (kPageStays && now == kNew && state.compare_exchange_strong(now, kTaken) &&
            ql::FailureIfThrown(false, [] { return page.Fill(); })) {
            state = now = kFilled;
        }
        return now == kFilled ? &page : nullptr;
    }

    char Narrow(wchar_t unit) const noexcept { return narrow_[static_cast<char16_t>(unit)]; }
    wchar_t Widen(char byte) const noexcept { return wide_[static_cast<unsigned char>(byte)]; }

  private:
    static constexpr std::size_t kUnits = 0x10000, kBytes = 0x100;

    // False where some character takes several bytes: there is no room for it then.
    bool Fill() {
        std::wstring units(kUnits, L'\0');
        std::iota(units.begin(), units.end(), L'\0');
        std::string bytes(kBytes, '\0');
        std::iota(bytes.begin(), bytes.end(), '\0');
        return Convert(units, narrow_.data(), kUnits) == kUnits &&
               ConvertBack(bytes, wide_.data()) == int{kBytes};
    }

    std::array<char, kUnits> narrow_{};
    std::array<wchar_t, kBytes> wide_{};
};

// Converts ASCII, and with `convertOther(i)` what else the text holds, until that cannot. Answers how far it
// came.
template <class Char, class ToChar, class Other>
std::size_t ConvertStart(std::basic_string_view<Char> text, ToChar* out, Other convertOther) {
    std::size_t at = 0;
#ifdef _WIN32
    for (; text.size() - at >= kBlock; at += kBlock) {
        for (unsigned others = MoveAsciiBlock(text.data() + at, out + at); others != 0;
             others &= others - 1) {
            const std::size_t i = at + static_cast<std::size_t>(std::countr_zero(others));
            if (!convertOther(i)) return i;
        }
    }
#endif
    for (; at < text.size(); ++at) {
        if (IsAscii(text[at])) {
            out[at] = static_cast<ToChar>(text[at]);
        } else if (!convertOther(at)) {
            break;
        }
    }
    return at;
}

// How much of the text's start is converted without the system.
std::size_t NarrowStart(std::wstring_view text, char* bytes) {
    return ConvertStart(text, bytes, [&](std::size_t i) {
        const OneBytePage* const page = OneBytePage::OfProcess();
        if (page) bytes[i] = page->Narrow(text[i]);
        return page != nullptr;
    });
}

std::size_t WidenStart(std::string_view text, wchar_t* units) {
    return ConvertStart(text, units, [&](std::size_t i) {
        const OneBytePage* const page = OneBytePage::OfProcess();
        if (page) units[i] = page->Widen(text[i]);
        return page != nullptr;
    });
}

// A byte a unit is enough, but for texts of many-byte code pages: only those are measured.
bool Narrow(std::wstring_view text, std::string& bytes) {
    bytes.resize(text.size());
    const std::size_t done = NarrowStart(text, bytes.data());
    text.remove_prefix(done);
    if (text.empty()) return true;
    std::size_t written = Convert(text, bytes.data() + done, text.size());
    if (written == 0) {
        bytes.resize(done + Convert(text, nullptr, 0));
        written = Convert(text, bytes.data() + done, bytes.size() - done);
    }
    bytes.resize(done + written);
    return written != 0;
}

// A unit a byte is always enough.
bool AppendWide(std::string_view text, std::wstring& out) {
    const std::size_t start = out.size();
    out.resize(start + text.size());
    const std::size_t done = WidenStart(text, out.data() + start);
    text.remove_prefix(done);
    if (text.empty()) return true;
    if (text.size() > INT_MAX) return false;
    const int written = ConvertBack(text, out.data() + start + done);
    out.resize(start + done + static_cast<std::size_t>(written));
    return written != 0;
}

// Between zeros alone, so that none ends a character of several bytes.
bool Widen(std::string_view text, std::wstring& wide) {
    wide.resize(text.size());
    const std::size_t done = WidenStart(text, wide.data());
    wide.resize(done);
    for (std::string_view rest = text.substr(done); !rest.empty();) {
        const std::size_t zero = rest.find('\0');
        if (!AppendWide(rest.substr(0, zero), wide)) return false;
        if (zero == std::string_view::npos) break;
        wide.push_back(L'\0');
        rest.remove_prefix(zero + 1);
    }
    return true;
}

// Whether the text was converted; what was not leaves nothing.
template <class Text, class Convert>
bool ConvertInto(Text& text, Convert convert) {
    const bool isDone = ql::FailureIfThrown(false, convert);
    if (!isDone) text.clear();
    return isDone;
}

RWWString ToWide(std::string_view text) {
    RWWString wide;
    AnsiToWide(text, wide);
    return wide;
}

}  // namespace

bool WideToAnsi(ql::TextView text, std::string& ansi) {
    return ConvertInto(ansi, [&] { return Narrow(text, ansi); });
}

bool AnsiToWide(std::string_view ansi, RWWString& text) {
    return ConvertInto(text, [&] { return Widen(ansi, text.str()); });
}

std::string WideToStdString(ql::TextView text) {
    std::string ansi;
    WideToAnsi(text, ansi);
    return ansi;
}

RWCString WideToRWCString(ql::TextView text) {
    return WideToStdString(text);
}

RWCString RWTStringToRWCString(const RWWString& text) {
    return WideToStdString(text);
}

RWWString AnsiToRWWString(const char* text) {
    return ToWide(ql::TextOf(text));
}

RWWString RWCStringToRWWString(const RWCString& text) {
    return ToWide(text);
}

RWWString MakeRWTStringAnsiOnly(ql::TextView text) {
    return ToWide(WideToStdString(text));
}

unsigned char WideCharToSingleByte(unsigned long ch) {
    if (ch > ql::kLastCharacter) return '_';
    std::wstring character;
    ql::AppendUtf16(character, static_cast<char32_t>(ch));
    const std::string bytes = WideToStdString(character);
    return static_cast<unsigned char>(bytes.empty() ? '_' : bytes.front());
}
