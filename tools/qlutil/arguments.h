#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// A call that is wrong in itself; the program answers it with the command's usage and exit status 2.
class WrongCall : public std::exception {
  public:
    explicit WrongCall(std::wstring why) : why_(std::move(why)) {}
    const std::wstring& why() const noexcept { return why_; }

  private:
    std::wstring why_;
};

// One switch that a command knows, without its "--".
struct SwitchRow {
    std::wstring_view name;
    bool takesValue = false;
};

// The words of a call after the command's own name: switches begin with "--", everything after a bare "--" is
// an argument. Views of the words given, which must outlive this.
class Arguments {
  public:
    // Throws WrongCall on a switch that is unknown, given twice, or lacks its value.
    Arguments(std::span<const std::wstring_view> words, std::span<const SwitchRow> known);

    std::size_t count() const noexcept { return plain_.size(); }
    std::wstring_view operator[](std::size_t index) const { return plain_.at(index); }
    const std::vector<std::wstring_view>& all() const noexcept { return plain_; }

    bool Has(std::wstring_view name) const noexcept { return Find(name) != nullptr; }
    std::optional<std::wstring_view> Value(std::wstring_view name) const noexcept;

  private:
    struct Given {
        std::wstring_view name;
        std::wstring_view value;
    };
    const Given* Find(std::wstring_view name) const noexcept;

    std::vector<std::wstring_view> plain_;
    std::vector<Given> switches_;
};

// A whole number of 32 bits in decimal; nothing when the word is anything else.
std::optional<int> ToInt(std::wstring_view word) noexcept;
// The same for a word that must be one; throws WrongCall naming what it should have been.
int RequireInt(std::wstring_view word, std::wstring_view what);
