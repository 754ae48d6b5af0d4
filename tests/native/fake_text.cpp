#include <windows.h>

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <string>
#include <string_view>

namespace {

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

// The common end of the conversions: the size alone when there is no room to fill.
template <class Unit>
int Deliver(const std::basic_string<Unit>& result, Unit* out, int capacity) {
    const int length = static_cast<int>(result.size());
    if (capacity == 0) return length;
    if (capacity < length) return Fail(ERROR_INSUFFICIENT_BUFFER);
    std::copy(result.begin(), result.end(), out);
    return length;
}

// A length of -1 stands for a text with the zero at its end, which then counts.
template <class Unit>
std::basic_string_view<Unit> Counted(const Unit* text, int length) {
    return {text, length < 0 ? std::char_traits<Unit>::length(text) + 1 : static_cast<std::size_t>(length)};
}

template <class Unit>
bool AreValid(const Unit* text, int length, const void* out, int capacity) {
    return text && length != 0 && length >= -1 && capacity >= 0 && (out || capacity == 0);
}

// --- Code page 1252

constexpr UINT kAnsiCodePage = 1252;

// Bytes 0x80 to 0x9f; all others are their own characters.
constexpr wchar_t kUpperControls[] =
    L"\u20ac\x81\u201a\u0192\u201e\u2026\u2020\u2021\u02c6\u2030\u0160\u2039\u0152\x8d\u017d\x8f"
    L"\x90\u2018\u2019\u201c\u201d\u2022\u2013\u2014\u02dc\u2122\u0161\u203a\u0153\x9d\u017e\u0178";

// Each character that the page does not hold with the one that stands in for it. The system's table goes on
// with combining marks, blanks and box drawing, which are left out: here they have no stand-in.
constexpr std::wstring_view kBestFit =
    L"ĀAāaĂAăaĄAąaĆCćcĈCĉcĊCċcČCčcĎDďdĐÐđdĒEēeĔEĕeĖEėeĘEęeĚEěeĜGĝgĞGğgĠGġgĢGģgĤHĥhĦHħhĨIĩiĪIīiĬIĭiĮIįi"
    L"İIıiĴJĵjĶKķkĹLĺlĻLļlĽLľlŁLłlŃNńnŅNņnŇNňnŌOōoŎOŏoŐOőoŔRŕrŖRŗrŘRřrŚSśsŜSŝsŞSşsŢTţtŤTťtŦTŧtŨUũuŪUūu"
    L"ŬUŭuŮUůuŰUűuŲUųuŴWŵwŶYŷyŹZźzŻZżzƀbƉÐƑƒƗIƚlƟOƠOơoƫtƮTƯUưuƶzǀ|ǃ!ǍAǎaǏIǐiǑOǒoǓUǔuǕUǖuǗUǘuǙUǚuǛUǜuǞA"
    L"ǟaǤGǥgǦGǧgǨKǩkǪOǫoǬOǭoǰjɡgʹ'ʺ\"ʼ'˄^ˈ'ˉ¯ˊ´ˋ`ˍ_˚°;;ΓGΘTΣSΦFΩOαaβßδdεeμµπpσsτtφfһh‐-‑-‗=․·′'‵`⁄/⁰°"
    L"⁴4⁵5⁶6⁷7⁸8ⁿn₀0₁1₂2₃3₄4₅5₆6₇7₈8₉9₡¢₤£₧PℂCℇEℊgℋHℌHℍHℎhℐIℑIℒLℓlℕN℘PℙPℚQℛRℜRℝRℤZℨZKKÅÅℬBℭC℮eℯeℰEℱFℳM"
    L"ℴo∅Ø−-∓±∕/∖\\∗*∘°∙·√v∞8∣|∩n∶:∼~≈˜≡=≤=≥=≪«≫»⋅·❘|";

constexpr bool IsFullWidthAscii(wchar_t unit) {
    return unit >= 0xff01 && unit <= 0xff5e;
}

wchar_t BestFit(wchar_t unit) {
    if (IsFullWidthAscii(unit)) return static_cast<wchar_t>(unit - 0xff00 + 0x20);
    for (std::size_t i = 0; i < kBestFit.size(); i += 2)
        if (kBestFit[i] == unit) return kBestFit[i + 1];
    return unit;
}

wchar_t FromAnsi(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80 && code <= 0x9f ? kUpperControls[code - 0x80] : static_cast<wchar_t>(code);
}

bool ToAnsi(wchar_t unit, std::string& out) {
    const wchar_t* controls = std::find(kUpperControls, std::end(kUpperControls) - 1, unit);
    if (controls != std::end(kUpperControls) - 1) {
        out.push_back(static_cast<char>(controls - kUpperControls + 0x80));
        return true;
    }
    const bool held = unit < 0x80 || (unit > 0x9f && unit <= 0xff);
    if (held) out.push_back(static_cast<char>(unit));
    return held;
}

std::string ToAnsi(std::wstring_view text, bool bestFit, const char* defaultChar, BOOL* usedDefault) {
    std::string out;
    BOOL anyDefault = FALSE;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (ToAnsi(bestFit ? BestFit(text[i]) : text[i], out)) continue;
        out += defaultChar ? *defaultChar : '?';
        anyDefault = TRUE;
    }
    if (usedDefault) *usedDefault = anyDefault;
    return out;
}

// --- UTF-8

constexpr char32_t kReplacement = 0xfffd;
constexpr char32_t kMalformed = 0xffffffff;

constexpr bool IsSurrogate(char32_t code) {
    return code >= 0xd800 && code <= 0xdfff;
}

void AppendUtf8(char32_t code, std::string& out) {
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | (code >> shift & 0x3f)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xc0 | code >> 6);
    } else {
        out += static_cast<char>(code < 0x10000 ? 0xe0 | code >> 12 : 0xf0 | code >> 18);
        if (code >= 0x10000) tail(12);
        tail(6);
    }
    if (code >= 0x80) tail(0);
}

// The code at the front of the text, which is taken off; a lone surrogate is malformed.
char32_t TakeCode(std::wstring_view& text) {
    const auto first = static_cast<char32_t>(text.front());
    text.remove_prefix(1);
    if (!IsSurrogate(first)) return first;
    const auto second = text.empty() ? 0 : static_cast<char32_t>(text.front());
    if (first >= 0xdc00 || second < 0xdc00 || second > 0xdfff) return kMalformed;
    text.remove_prefix(1);
    return 0x10000 + ((first - 0xd800) << 10) + (second - 0xdc00);
}

// As above; of a malformed sequence the bytes that might have begun a good one go together.
char32_t TakeCode(std::string_view& text) {
    const auto byte = [&] { return static_cast<unsigned char>(text.front()); };
    const unsigned first = byte();
    text.remove_prefix(1);
    if (first < 0x80) return first;
    if (first < 0xc2 || first > 0xf4) return kMalformed;
    const int tails = first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
    char32_t code = first & (0x3fu >> tails);
    unsigned lowest = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    unsigned highest = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    for (int i = 0; i < tails; ++i) {
        if (text.empty() || byte() < lowest || byte() > highest) return kMalformed;
        code = code << 6 | (byte() & 0x3fu);
        text.remove_prefix(1);
        lowest = 0x80;
        highest = 0xbf;
    }
    return code;
}

// Takes the text off code by code; false when one is malformed and that counts.
template <class View, class Append>
bool TakeCodes(View text, bool failOnMalformed, Append append) {
    while (!text.empty()) {
        const char32_t code = TakeCode(text);
        if (code == kMalformed && failOnMalformed) return false;
        append(code == kMalformed ? kReplacement : code);
    }
    return true;
}

void AppendUtf16(char32_t code, std::wstring& out) {
    if (code >= 0x10000) {
        out += static_cast<wchar_t>(0xd800 + ((code - 0x10000) >> 10));
        code = 0xdc00 + (code & 0x3ff);
    }
    out += static_cast<wchar_t>(code);
}

// --- Letters

locale_t UnicodeLocale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

wint_t Code(wchar_t unit) {
    return static_cast<wint_t>(unit);
}

// The system maps case only where the mapping back gives the same character again.
wchar_t Upper(wchar_t unit) {
    const wint_t upper = towupper_l(Code(unit), UnicodeLocale());
    return towlower_l(upper, UnicodeLocale()) == Code(unit) ? static_cast<wchar_t>(upper) : unit;
}

wchar_t Lower(wchar_t unit) {
    const wint_t lower = towlower_l(Code(unit), UnicodeLocale());
    return towupper_l(lower, UnicodeLocale()) == Code(unit) ? static_cast<wchar_t>(lower) : unit;
}

struct CharacterClass {
    WORD bit;
    int (*holds)(wint_t unit, locale_t locale);
};

constexpr CharacterClass kClasses[] = {
    {C1_UPPER, iswupper_l}, {C1_LOWER, iswlower_l}, {C1_DIGIT, iswdigit_l},
    {C1_SPACE, iswspace_l}, {C1_PUNCT, iswpunct_l}, {C1_CNTRL, iswcntrl_l},
    {C1_BLANK, iswblank_l}, {C1_ALPHA, iswalpha_l}, {C1_XDIGIT, iswxdigit_l},
};

}  // namespace

UINT GetACP() {
    return kAnsiCodePage;
}

BOOL IsDBCSLeadByte(BYTE) {
    return FALSE;
}

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, wchar_t* out,
                        int capacity) {
    if (!AreValid(text, length, out, capacity)) return Fail(ERROR_INVALID_PARAMETER);
    const std::string_view source = Counted(text, length);
    std::wstring result;
    if (codePage == CP_UTF8) {
        if (flags & ~DWORD{MB_ERR_INVALID_CHARS}) return Fail(ERROR_INVALID_FLAGS);
        if (!TakeCodes(source, flags != 0, [&](char32_t code) { AppendUtf16(code, result); }))
            return Fail(ERROR_NO_UNICODE_TRANSLATION);
    } else if (codePage == CP_ACP || codePage == kAnsiCodePage) {
        for (char byte : source) result += FromAnsi(byte);
    } else {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    return Deliver(result, out, capacity);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int length, char* out, int capacity,
                        const char* defaultChar, BOOL* usedDefault) {
    if (!AreValid(text, length, out, capacity)) return Fail(ERROR_INVALID_PARAMETER);
    const std::wstring_view source = Counted(text, length);
    std::string result;
    if (codePage == CP_UTF8) {
        if (defaultChar || usedDefault) return Fail(ERROR_INVALID_PARAMETER);
        if (flags & ~DWORD{WC_ERR_INVALID_CHARS}) return Fail(ERROR_INVALID_FLAGS);
        if (!TakeCodes(source, flags != 0, [&](char32_t code) { AppendUtf8(code, result); }))
            return Fail(ERROR_NO_UNICODE_TRANSLATION);
    } else if (codePage == CP_ACP || codePage == kAnsiCodePage) {
        result = ToAnsi(source, !(flags & WC_NO_BEST_FIT_CHARS), defaultChar, usedDefault);
    } else {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    return Deliver(result, out, capacity);
}

BOOL GetStringTypeW(DWORD infoType, const wchar_t* text, int length, WORD* classes) {
    if (infoType != CT_CTYPE1 || !text || !classes) return Fail(ERROR_INVALID_PARAMETER);
    for (wchar_t unit : Counted(text, length)) {
        WORD bits = 0;
        for (const CharacterClass& entry : kClasses) {
            if (entry.holds(Code(unit), UnicodeLocale())) bits = static_cast<WORD>(bits | entry.bit);
        }
        *classes++ = bits;
    }
    return TRUE;
}

int LCMapStringEx(const wchar_t*, DWORD mapping, const wchar_t* text, int length, wchar_t* out, int capacity,
                  void*, void*, std::intptr_t) {
    if (!AreValid(text, length, out, capacity)) return Fail(ERROR_INVALID_PARAMETER);
    if (mapping != LCMAP_UPPERCASE && mapping != LCMAP_LOWERCASE) return Fail(ERROR_INVALID_FLAGS);
    std::wstring result(Counted(text, length));
    std::transform(result.begin(), result.end(), result.begin(), mapping == LCMAP_UPPERCASE ? Upper : Lower);
    return Deliver(result, out, capacity);
}

int LCMapStringW(LCID, DWORD mapping, const wchar_t* text, int length, wchar_t* out, int capacity) {
    return LCMapStringEx(LOCALE_NAME_INVARIANT, mapping, text, length, out, capacity, nullptr, nullptr, 0);
}

int CompareStringOrdinal(const wchar_t* a, int lengthOfA, const wchar_t* b, int lengthOfB, BOOL ignoreCase) {
    if (!a || !b || lengthOfA < -1 || lengthOfB < -1) return Fail(ERROR_INVALID_PARAMETER);
    std::wstring left(Counted(a, lengthOfA));
    std::wstring right(Counted(b, lengthOfB));
    if (ignoreCase) {
        std::transform(left.begin(), left.end(), left.begin(), Upper);
        std::transform(right.begin(), right.end(), right.begin(), Upper);
    }
    const auto order = left <=> right;
    return order < 0 ? CSTR_LESS_THAN : order > 0 ? CSTR_GREATER_THAN : CSTR_EQUAL;
}
