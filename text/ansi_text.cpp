#include "text/ansi_text.h"

#ifdef _WIN32
#include <emmintrin.h>
#endif

#include <algorithm>
#include <climits>
#include <string_view>

#include "platform/failure.h"
#include "platform/win32.h"
#include "text/unicode.h"

namespace {

// Null where the code page's own default character is "?", which is nearly everywhere: with a character of
// the caller's the system converts several times slower, and for UTF-8 not at all.
const char* DefaultCharacter() {
    static const bool isOwn = [] {
        CPINFO info = {};
        return ::GetCPInfo(CP_ACP, &info) && info.DefaultChar[0] == '?' && info.DefaultChar[1] == 0;
    }();
    return isOwn ? nullptr : "?";
}

// ASCII is the same in every ANSI code page, and most texts are nothing else: it is moved sixteen units at a
// time. Each answers how much of the text's start it converted.
std::size_t NarrowAscii(std::wstring_view text, char* bytes) {
    std::size_t at = 0;
#ifdef _WIN32
    for (; text.size() - at >= 16; at += 16) {
        const auto* units = reinterpret_cast<const __m128i*>(text.data() + at);
        const __m128i low = _mm_loadu_si128(units);
        const __m128i high = _mm_loadu_si128(units + 1);
        const __m128i beyond = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(-0x80));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyond, _mm_setzero_si128())) != 0xFFFF) break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + at), _mm_packus_epi16(low, high));
    }
#endif
    for (; at < text.size() && static_cast<char32_t>(text[at]) < 0x80; ++at) {
        bytes[at] = static_cast<char>(text[at]);
    }
    return at;
}

std::size_t WidenAscii(std::string_view text, wchar_t* units) {
    std::size_t at = 0;
#ifdef _WIN32
    for (; text.size() - at >= 16; at += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        if (_mm_movemask_epi8(bytes) != 0) break;
        auto* const out = reinterpret_cast<__m128i*>(units + at);
        _mm_storeu_si128(out, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        _mm_storeu_si128(out + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
    }
#endif
    for (; at < text.size() && static_cast<unsigned char>(text[at]) < 0x80; ++at) {
        units[at] = static_cast<wchar_t>(text[at]);
    }
    return at;
}

// The number of bytes: written, or needed when there is no room to write to; 0 when the system refuses.
std::size_t Convert(std::wstring_view text, char* bytes, std::size_t room) {
    if (text.size() > INT_MAX) return 0;
    return static_cast<std::size_t>(::WideCharToMultiByte(
        CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes,
        static_cast<int>(std::min<std::size_t>(room, INT_MAX)), DefaultCharacter(), nullptr));
}

// A byte a unit is enough, but for texts of many-byte code pages: only those are measured.
std::string ToAnsi(std::wstring_view text) {
    std::string bytes(text.size(), '\0');
    const std::size_t ascii = NarrowAscii(text, bytes.data());
    text.remove_prefix(ascii);
    if (text.empty()) return bytes;
    std::size_t written = Convert(text, bytes.data() + ascii, text.size());
    if (written == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        bytes.resize(ascii + Convert(text, nullptr, 0));
        written = Convert(text, bytes.data() + ascii, bytes.size() - ascii);
    }
    bytes.resize(written == 0 ? 0 : ascii + written);
    return bytes;
}

// A unit a byte is always enough.
bool AppendWide(std::string_view text, std::wstring& out) {
    const std::size_t start = out.size();
    out.resize(start + text.size());
    const std::size_t ascii = WidenAscii(text, out.data() + start);
    text.remove_prefix(ascii);
    if (text.empty()) return true;
    if (text.size() > INT_MAX) return false;
    const int room = static_cast<int>(text.size());
    const int written = ::MultiByteToWideChar(CP_ACP, 0, text.data(), room, out.data() + start + ascii, room);
    out.resize(start + ascii + static_cast<std::size_t>(written));
    return written != 0;
}

std::wstring ToWide(std::string_view text) {
    std::wstring wide;
    return AppendWide(text, wide) ? wide : std::wstring();
}

// Zeros are rare: a block without any is passed over in a few steps, which a search byte by byte is not.
std::size_t FindZero(std::string_view text) {
    constexpr std::size_t kBlock = 64;
    std::size_t at = 0;
    for (; text.size() - at >= kBlock; at += kBlock) {
        unsigned char found = 0;
        for (std::size_t i = at; i < at + kBlock; ++i)
            found = static_cast<unsigned char>(found | (text[i] == '\0'));
        if (found) break;
    }
    return text.find('\0', at);
}

// Between zeros alone, so that none ends a character of several bytes.
std::wstring ToWideByChunks(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    const std::size_t ascii = WidenAscii(text, wide.data());
    wide.resize(ascii);
    for (std::string_view rest = text.substr(ascii); !rest.empty();) {
        const std::size_t zero = FindZero(rest);
        if (!AppendWide(rest.substr(0, zero), wide)) return {};
        if (zero == std::string_view::npos) break;
        wide.push_back(L'\0');
        rest.remove_prefix(zero + 1);
    }
    return wide;
}

}  // namespace

std::string WideToStdString(ql::TextView text) {
    return ql::FailureIfThrown({}, [&] { return ToAnsi(text); });
}

RWCString WideToRWCString(ql::TextView text) {
    return WideToStdString(text);
}

RWCString RWTStringToRWCString(const RWWString& text) {
    return WideToStdString(text);
}

RWWString AnsiToRWWString(const char* text) {
    return ql::FailureIfThrown({}, [&] { return ToWide(ql::TextOf(text)); });
}

RWWString RWCStringToRWWString(const RWCString& text) {
    return ql::FailureIfThrown({}, [&] { return ToWideByChunks(text); });
}

RWWString MakeRWTStringAnsiOnly(ql::TextView text) {
    return ql::FailureIfThrown({}, [&] { return ToWide(ToAnsi(text)); });
}

unsigned char WideCharToSingleByte(unsigned long ch) {
    if (ch > ql::kLastCharacter) return '_';
    std::wstring character;
    ql::AppendUtf16(character, static_cast<char32_t>(ch));
    const std::string bytes = WideToStdString(character);
    return static_cast<unsigned char>(bytes.empty() ? '_' : bytes.front());
}
