#include "settings/registry.h"

#include <gmock/gmock.h>

#include "settings/registry_values.h"
#include "tests/support/private_registry.h"

#ifdef _WIN32
#include <sddl.h>
#endif

namespace {

constexpr wchar_t kSection[] = L"Locations";
constexpr wchar_t kEntry[] = L"Entry";

class Registry : public testing::Test {
  protected:
    static void PutUser(DWORD type, const void* bytes, std::size_t count) {
        PrivateRegistry::PutBytes(kUser, PrivateRegistry::Path(kSection), kEntry, type, bytes, count);
    }
    static RWWString Text() {
        RWWString text(L"none");
        GetRegStringVal(kSection, kEntry, &text);
        return text;
    }

    PrivateRegistry registry_;
};

TEST_F(Registry, ReadsTextOutOfAnyStoredBytes) {
    const std::wstring zero(1, L'\0'), most(511, L'm');
    const struct {
        DWORD type;
        bool found;
        std::wstring units;
        std::size_t oddBytes;
        std::wstring text;
    } cases[] = {{REG_SZ, true, L"text" + zero, 0, L"text"},
                 {REG_SZ, true, L"odd", 1, L"odd"},
                 {REG_SZ, true, L"", 0, L""},
                 {REG_SZ, true, L"a" + zero + L"behind", 0, L"a"},
                 {REG_EXPAND_SZ, true, L"%TEMP%" + zero, 0, L"%TEMP%"},
                 {REG_MULTI_SZ, true, L"first" + zero + L"second" + zero + zero, 0, L"first"},
                 {REG_SZ, true, most + L"x", 0, most},
                 {REG_SZ, false, most + L"x", 1, L""},
                 {REG_NONE, false, L"text" + zero, 0, L""},
                 {REG_BINARY, false, L"text" + zero, 0, L""}};
    for (const auto& c : cases) {
        // What follows the text in memory is no zero: the system would store that too.
        PutUser(c.type, (c.units + L"##").c_str(), c.units.size() * sizeof(wchar_t) + c.oddBytes);
        SCOPED_TRACE(testing::Message() << c.type << " " << c.units.size() << " + " << c.oddBytes);
        RWWString text;
        EXPECT_EQ(c.found, GetRegStringVal(kSection, kEntry, &text));
        EXPECT_EQ(RWWString(c.found ? c.text : L"none"), Text());
        EXPECT_EQ(RWWString(c.text), GetQLRegStringEx(kSection, kEntry, false));
    }
}

TEST_F(Registry, ReadsIntegersOfAtMostFourBytesOfAnyType) {
    const BYTE bytes[8] = {0x78, 0x56, 0x34, 0xf2, 0xff, 0xff, 0xff, 0xff};
    const unsigned values[] = {0, 0x78, 0x5678, 0x345678, 0xf2345678, 7, 7, 7, 7};
    for (const int type : {REG_DWORD, REG_SZ, REG_BINARY, REG_QWORD}) {
        for (std::size_t count = 0; count <= sizeof bytes; ++count) {
            PutUser(static_cast<DWORD>(type), bytes, count);
            unsigned value = 7;
            EXPECT_EQ(count <= 4, GetRegIntVal(kSection, kEntry, &value)) << type << " " << count;
            EXPECT_EQ(values[count], value) << type << " " << count;
        }
    }
}

TEST_F(Registry, TheUsersValueWinsWhenItCanBeReadAndOneRootIsReadWithoutTheOther) {
    EXPECT_EQ(L"none", Text());
    registry_.Put(kMachine, kSection, kEntry, L"machine");
    registry_.Put(kUser, kSection, kEntry, 5);
    EXPECT_EQ(L"machine", Text());
    EXPECT_EQ(L"", GetQLRegStringEx(kSection, kEntry, false));
    registry_.Put(kUser, kSection, kEntry, L"C:\\User\\\\");
    EXPECT_EQ(L"C:\\User\\\\", Text());
    EXPECT_EQ(L"C:\\User\\", GetQLProfileDirEx(kSection, kEntry, false));
    EXPECT_EQ(L"machine", GetQLRegStringEx(kSection, kEntry, true));
    registry_.Put(kUser, L"", L"", L"default value");
    for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""})
        EXPECT_EQ(L"default value", GetQLRegStringEx(none, none, false)) << "no section is the base key";
}

TEST_F(Registry, ValuesOfAnyTypeAndSizeAreReadAndWrittenWhole) {
    RegistryValue stored;
    registry_.Put(kMachine, kSection, kEntry, 3);
    EXPECT_FALSE(ReadRegValue(kSection, kEntry, false, stored));
    EXPECT_FALSE(ReadRegValue(kSection, L"none", true, stored));
    EXPECT_EQ(RegistryValue(), stored);
    EXPECT_TRUE(ReadRegValue(kSection, kEntry, true, stored));
    EXPECT_EQ((RegistryValue{REG_DWORD, {3, 0, 0, 0}}), stored);
    std::vector<RegistryValue> values = {{REG_BINARY, {}},
                                         {0x12345678, std::vector<unsigned char>(100000, 9)}};
    for (std::size_t size = 2; size < 200; size += 2)  // texts without a zero at their end
        values.push_back({REG_SZ, std::vector<unsigned char>(size, 'x')});
    for (const RegistryValue& value : values) {
        EXPECT_TRUE(WriteRegValue(L"New", kEntry, value)) << value.type;
        EXPECT_TRUE(ReadRegValue(L"New", kEntry, false, stored)) << value.type;
        EXPECT_EQ(value, stored);
    }
    for (const bool was : {true, false}) EXPECT_EQ(was, DeleteRegValue(L"New", kEntry));
}

TEST_F(Registry, BooleansAreTextsAndAnyOtherTextIsFalse) {
    bool value = true;
    registry_.Put(kUser, kSection, kEntry, 1);
    EXPECT_FALSE(GetRegBoolVal(kSection, kEntry, &value));
    EXPECT_TRUE(value);
    for (const auto& [text, expected] : {std::pair(L"maybe", false), {g_trueStr, true}, {L"", false}}) {
        registry_.Put(kUser, kSection, kEntry, text);
        EXPECT_TRUE(GetRegBoolVal(kSection, kEntry, &value)) << text;
        EXPECT_EQ(expected, value) << text;
    }
}

TEST_F(Registry, ColoursAreThreeMaskedNumbers) {
    const std::pair<const wchar_t*, unsigned long> cases[] = {
        {L"255,128,0", 33023}, {L"300,0,0", 44}, {L"0,-1,0", 0xff00}, {L" 1, 2,3 and more,4", 0x30201},
        {L"red,,", 0},         {L"1,2,", 0x201}, {L"", 99},           {L"12", 99},
        {L"1,2", 99},          {L",1,2", 99},    {L",,", 99},         {L"99999999999,0,0", 0xff}};
    for (const auto& [text, color] : cases) EXPECT_EQ(color, QLRegStringToColor(text, 99)) << text;
}

TEST_F(Registry, ReadsWhatThePreviousGenerationLeft) {
    EXPECT_EQ(L"", _GetOldQLProfileString(kSection, kEntry));
    const std::wstring path = L"SOFTWARE\\Brellwick\\Quillet 6\\Locations";
    registry_.PutBytes(kMachine, path, kEntry, REG_SZ, L"old", sizeof L"old");
    EXPECT_EQ(L"old", _GetOldQLProfileString(kSection, kEntry));
    registry_.PutBytes(kUser, path, kEntry, REG_SZ, L"", sizeof L"");
    EXPECT_EQ(L"default", GetOldQLRegString(kSection, kEntry, L"default"));
#ifndef _WIN32  // the library keeps it to itself
    for (const auto& [type, text] : {std::pair(REG_SZ, L"x"), {REG_EXPAND_SZ, L"x"}, {REG_BINARY, L""}}) {
        registry_.PutBytes(kUser, path, kEntry, static_cast<DWORD>(type), L"x", sizeof(wchar_t));
        EXPECT_EQ(text, ql::ReadForeignText(kUser, path, kEntry, 1)) << type;
    }
#endif
}

using Texts = std::vector<std::wstring>;

Texts Names(EnumQLEntries entries) {
    Texts names;
    RWWString name;
    while (entries.GetNextEntry(name)) names.push_back(name.str());
    EXPECT_EQ(entries.NumEntries(), names.size());
    EXPECT_FALSE(entries.GetNextEntry(name));
    return names;
}

TEST_F(Registry, EntriesOfBothRootsAreListedOnce) {
    const std::wstring longest(16383, L'n');
    EXPECT_EQ(Texts(), Names(EnumQLEntries(kSection)));
    registry_.Put(kUser, kSection, L"Shared", 1);
    for (const std::wstring& name : {longest, std::wstring(L"SHARED"), std::wstring()})
        registry_.Put(kMachine, kSection, name.c_str(), L"");
    EXPECT_THAT(Names(EnumQLEntries(kSection)), testing::UnorderedElementsAre(longest, L"", L"Shared"));
    EXPECT_THAT(Names(EnumQLEntries(kSection, true)), testing::UnorderedElementsAre(longest, L"", L"SHARED"));
    EXPECT_EQ(Texts{L"Shared"}, Names(EnumQLEntries(PrivateRegistry::Path(kSection).c_str(), false, false)));
}

TEST_F(Registry, SectionsAreHandedOutOneByOneUntilTheirKeyIsDeleted) {
    for (const wchar_t* section : {L"Word Proc\\One", L"Word Proc\\Two"})
        registry_.Put(kUser, section, kEntry, L"");
    const std::wstring path = PrivateRegistry::Path(L"Word Proc");
    EnumQLSections sections(kUser, path.c_str()), walked(L"Word Proc", false);
    for (const wchar_t* name : {L"One", L"Two", L"", L""}) EXPECT_EQ(name, sections.GetNextSection());
    EXPECT_EQ(L"Word Proc", EnumQLSections(nullptr, false).GetNextSection());
    EXPECT_EQ(L"", EnumQLSections(L"Word Proc", true).GetNextSection());
    ::RegDeleteTreeW(kUser, path.c_str());
    EXPECT_EQ(L"", walked.GetNextSection());
}

#ifdef _WIN32
TEST_F(Registry, AKeyIsReadForASecondAtMostOnceItsRootStandsForAnother) {
    registry_.Put(kUser, kSection, kEntry, L"former");
    EXPECT_EQ(L"former", Text());
    const ql::UniqueRegKey other = PrivateRegistry::Create(kUser, L"Other");
    EXPECT_EQ(ERROR_SUCCESS, ::RegOverridePredefKey(kUser, other.get()));
    ::Sleep(1100);
    EXPECT_EQ(L"none", Text());
}

TEST_F(Registry, AKeyHasTheClassOfItsFirstValue) {
    for (const auto& [section, type] : {std::pair(L"REG_DWORD", REG_DWORD), {L"REG_SZ", REG_SZ}}) {
        EXPECT_TRUE(WriteRegValue(section, kEntry, {static_cast<unsigned long>(type), {}}));
        ql::UniqueRegKey key;
        ::RegOpenKeyExW(kUser, PrivateRegistry::Path(section).c_str(), 0, KEY_READ, key.put());
        wchar_t name[32] = {};
        DWORD size = 32;
        ::RegQueryInfoKeyW(key.get(), name, &size, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                           nullptr, nullptr, nullptr);
        EXPECT_STREQ(section, name);
    }
}

// Nobody may write to it, whoever runs the test.
TEST_F(Registry, ADeniedKeyTakesNoValueAndIsRead) {
    registry_.Put(kUser, kSection, kEntry, L"kept");
    ql::UniqueRegKey key;
    ::RegOpenKeyExW(kUser, PrivateRegistry::Path(kSection).c_str(), 0, WRITE_DAC, key.put());
    const auto admit = [&key](const wchar_t* rules) {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rules, SDDL_REVISION_1, &descriptor, nullptr);
        EXPECT_EQ(ERROR_SUCCESS, ::RegSetKeySecurity(key.get(), DACL_SECURITY_INFORMATION, descriptor));
        ::LocalFree(descriptor);
    };
    admit(L"D:(D;;0x00000006;;;WD)(A;;KA;;;WD)");  // setting values, creating keys
    EXPECT_FALSE(WriteRegValue(kSection, kEntry, {REG_SZ, {}}));
    EXPECT_EQ(L"kept", Text());
    admit(L"D:(A;;KA;;;WD)");
    EXPECT_TRUE(WriteRegValue(kSection, kEntry, {REG_SZ, {}}));
}
#endif

}  // namespace
