#include "tools/qlutil/arguments.h"

#include <algorithm>
#include <charconv>

Arguments::Arguments(std::span<const std::wstring_view> words, std::span<const SwitchRow> known) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == L"--") {
            plain_.insert(plain_.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
            return;
        }
        if (!words[i].starts_with(L"--")) {
            plain_.push_back(words[i]);
            continue;
        }
        const std::wstring_view name = words[i].substr(2);
        const auto row =
            std::find_if(known.begin(), known.end(), [&](const SwitchRow& r) { return r.name == name; });
        if (row == known.end()) throw WrongCall(L"unknown switch --" + std::wstring(name));
        if (Has(name)) throw WrongCall(L"switch --" + std::wstring(name) + L" is given twice");
        if (row->takesValue && ++i == words.size()) {
            throw WrongCall(L"switch --" + std::wstring(name) + L" lacks its value");
        }
        switches_.push_back({name, row->takesValue ? words[i] : std::wstring_view()});
    }
}

std::optional<std::wstring_view> Arguments::Value(std::wstring_view name) const noexcept {
    const Given* given = Find(name);
    return given ? std::optional(given->value) : std::nullopt;
}

const Arguments::Given* Arguments::Find(std::wstring_view name) const noexcept {
    const auto given =
        std::find_if(switches_.begin(), switches_.end(), [&](const Given& g) { return g.name == name; });
    return given == switches_.end() ? nullptr : &*given;
}

std::optional<int> ToInt(std::wstring_view word) noexcept {
    char digits[16];
    if (word.empty() || word.size() > sizeof digits) return std::nullopt;
    for (std::size_t i = 0; i < word.size(); ++i)
        digits[i] = word[i] < 0x80 ? static_cast<char>(word[i]) : '?';
    int number = 0;
    const char* const end = digits + word.size();
    const auto [stop, error] = std::from_chars(digits, end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

int RequireInt(std::wstring_view word, std::wstring_view what) {
    const std::optional<int> number = ToInt(word);
    if (!number) {
        throw WrongCall(std::wstring(what) + L" must be a whole number, not \"" + std::wstring(word) + L"\"");
    }
    return *number;
}
