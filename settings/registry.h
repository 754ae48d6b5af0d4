#pragma once

#include <memory>
#include <vector>

#include "platform/export.h"
#include "rw/wide_string.h"
#include "text/fields.h"
#include "text/string_table.h"

struct HKEY__;  // NOLINT(bugprone-reserved-identifier): the system's name
using HKEY = HKEY__*;

// The preferences as they lie in the registry: values grouped in sections below "SOFTWARE\Quillet\Author\". A
// null or empty section is that base key itself. "Current user first" means that the user's value wins over
// the machine's. The everyday accessors, which go through the settings stores, are in settings/preferences.h.
//
// A text is a value of type REG_SZ, REG_EXPAND_SZ (not expanded) or REG_MULTI_SZ (its first text). It ends at
// its first zero, need not have one, and is cut to 511 units; a value of more than 512 units is not found.
// Nothing is assumed about what is stored, and errors of the registry only ever mean "not found"; so does a
// lack of memory, which no function here throws.
//
// The machine's values are those of the 32-bit view ("SOFTWARE\WOW6432Node" on 64-bit Windows), whatever the
// word size of the program: all programs see the same.
//
// A section's key stays open from one reading to the next, so that many values of it cost one opening. It is
// used for a second at most, and opened anew when it was deleted meanwhile: all that other threads and
// processes write is seen at once, a rename of the key, or RegOverridePredefKey, when the second is over.
//
// Functions without an object are safe on any thread. A null text argument counts as empty; out-parameters
// must not be null.

// Each answers whether a value was found, and leaves the out-parameter alone when none was. Current user
// first.
QL_API bool GetRegStringVal(const wchar_t* section, const wchar_t* entry, RWWString* value);

// Kept on purpose: the type is not looked at. Any value of at most four bytes is taken as a little-endian
// number, missing bytes being zero.
QL_API bool GetRegIntVal(const wchar_t* section, const wchar_t* entry, unsigned int* value);

// A text that is found but is no boolean gives false.
QL_API bool GetRegBoolVal(const wchar_t* section, const wchar_t* entry, bool* value);

// What lies in the registry under a name, whatever its type and size.
struct RegistryValue {
    unsigned long type = 0;            // REG_SZ and its like
    std::vector<unsigned char> bytes;  // a text's are UTF-16, its ending zero, if it has one, included

    bool operator==(const RegistryValue&) const = default;  // same type, same bytes
};

// One root's value; false, and the out-parameter as it was, when there is none. Writing and deleting touch
// the current user's alone, and no settings store; they answer whether the registry did it.
QL_API bool ReadRegValue(const wchar_t* section, const wchar_t* entry, bool machine,
                         RegistryValue& value) noexcept;
QL_API bool WriteRegValue(const wchar_t* section, const wchar_t* entry, const RegistryValue& value) noexcept;
QL_API bool DeleteRegValue(const wchar_t* section, const wchar_t* entry) noexcept;

// What the readers above would find in it; false, and the out-parameter as it was, when they would find
// nothing.
QL_API bool TextOfRegValue(const RegistryValue& value, RWWString& text) noexcept;
QL_API bool NumberOfRegValue(const RegistryValue& value, int& number) noexcept;

// Red + 256 green + 65536 blue from "red,green,blue", each part read as a leading decimal number (0 when
// there is none; behind blanks and a sign, and held within 32 bits) of which the low 8 bits count:
// "255,128,0" -> 33023, "300,0,0" -> 44. The default when a
// comma is missing or the first one stands at the front.
QL_API unsigned long QLRegStringToColor(const RWWString& text, unsigned long defaultColor);

// The text of one root only: the local machine's or the current user's. Empty when absent.
QL_API RWWString GetQLRegStringEx(const wchar_t* section, const wchar_t* entry, bool machine);

// The same without one trailing backslash.
QL_API RWWString GetQLProfileDirEx(const wchar_t* section, const wchar_t* entry, bool machine);

// The text that the previous generation of the product left below "SOFTWARE\Brellwick\Quillet 6\", current
// user first. Empty, or the default, when it is absent or empty.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the exported name is settled.
QL_API RWWString _GetOldQLProfileString(const wchar_t* section, const wchar_t* entry);
QL_API RWWString GetOldQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText);

// The names of a section's values, collected at construction, in the registry's order; when memory runs out,
// those for which there was some. Use one object from one thread at a time.
class QL_API EnumQLEntries : public QLStringTable {
  public:
    // Both roots: the current user's names, then those that only the machine has (compared ignoring case).
    explicit EnumQLEntries(const wchar_t* section);

    // One root. With underBase false the section is a full key path.
    EnumQLEntries(const wchar_t* section, bool machine, bool underBase = true);

    bool GetNextEntry(RWWString& name);  // false, and the name untouched, after the last

  private:
    bool Collect(HKEY root, const RWWString& path);

    unsigned next_ = 0;
};

// The names of a key's subkeys, read one by one while the key is held open. Use one object from one thread at
// a time; what another process adds or removes meanwhile may be missed or seen.
class QL_API EnumQLSections {
  public:
    // A key that cannot be opened has no sections.
    EnumQLSections(HKEY root, const wchar_t* subkey);
    EnumQLSections(const wchar_t* section, bool machine);  // those within a section of the product

    RWWString GetNextSection();  // empty after the last

  private:
    struct QL_API Closer {
        void operator()(HKEY key) const noexcept;
    };
    std::unique_ptr<HKEY__, Closer> key_;
    unsigned next_ = 0;
};
