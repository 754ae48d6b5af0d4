#include "settings/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/private_registry.h"

namespace {

constexpr wchar_t kSection[] = L"Locations";
constexpr wchar_t kEntry[] = L"Entry";

class Registry : public testing::Test {
  protected:
    static void PutUser(DWORD type, const void* bytes, std::size_t count) {
        PrivateRegistry::PutBytes(kUser, PrivateRegistry::Path(kSection), kEntry, type, bytes, count);
    }
    // What follows the text in memory is no zero: the system would store that too.
    static void PutUser(DWORD type, const std::wstring& units, std::size_t oddBytes) {
        PutUser(type, (units + L"##").c_str(), units.size() * sizeof(wchar_t) + oddBytes);
    }

    PrivateRegistry registry_;
};

TEST_F(Registry, ReadsTextOutOfAnyStoredBytes) {
    const std::wstring zero(1, L'\0');
    const std::wstring most(511, L'm');
    const struct {
        DWORD type;
        bool found;
        std::wstring units;
        std::size_t oddBytes;
        std::wstring text;
    } cases[] = {{REG_SZ, true, L"text" + zero, 0, L"text"},
                 {REG_SZ, true, L"odd", 1, L"odd"},
                 {REG_SZ, true, L"\xd83d", 0, L"\xd83d"},
                 {REG_SZ, true, L"", 1, L""},
                 {REG_SZ, true, L"", 0, L""},
                 {REG_SZ, true, zero + L"behind", 0, L""},
                 {REG_SZ, true, L"a" + zero + L"behind", 0, L"a"},
                 {REG_EXPAND_SZ, true, L"%TEMP%" + zero, 0, L"%TEMP%"},
                 {REG_MULTI_SZ, true, L"first" + zero + L"second" + zero + zero, 0, L"first"},
                 {REG_SZ, true, most + zero, 0, most},
                 {REG_SZ, true, most + L"x", 0, most},
                 {REG_SZ, false, most + L"x", 1, L""},
                 {REG_SZ, false, most + L"xy", 0, L""},
                 {REG_SZ, false, std::wstring(100000, L'h'), 0, L""},
                 {REG_NONE, false, L"text" + zero, 0, L""},
                 {REG_BINARY, false, L"text" + zero, 0, L""},
                 {0x12345678, false, L"text", 0, L""}};
    for (const auto& c : cases) {
        PutUser(c.type, c.units, c.oddBytes);
        SCOPED_TRACE(testing::Message()
                     << "type " << c.type << ", units " << c.units.size() << " + " << c.oddBytes);
        RWWString text(L"before");
        EXPECT_EQ(c.found, GetRegStringVal(kSection, kEntry, &text));
        EXPECT_EQ(RWWString(c.found ? c.text : L"before"), text);
        EXPECT_EQ(RWWString(c.text), GetQLRegStringEx(kSection, kEntry, false));
    }
}

TEST_F(Registry, ReadsIntegersOfAtMostFourBytesOfAnyType) {
    const BYTE bytes[8] = {0x78, 0x56, 0x34, 0xf2, 0xff, 0xff, 0xff, 0xff};
    const struct {
        DWORD type;
        std::size_t count;
        bool found;
        unsigned value;
    } cases[] = {
        {REG_DWORD, 4, true, 0xf2345678}, {REG_BINARY, 4, true, 0xf2345678}, {REG_SZ, 4, true, 0xf2345678},
        {REG_BINARY, 3, true, 0x345678},  {REG_BINARY, 1, true, 0x78},       {REG_BINARY, 0, true, 0},
        {REG_BINARY, 5, false, 7},        {REG_QWORD, 8, false, 7},
    };
    for (const auto& c : cases) {
        PutUser(c.type, bytes, c.count);
        SCOPED_TRACE(testing::Message() << "type " << c.type << ", bytes " << c.count);
        unsigned value = 7;
        EXPECT_EQ(c.found, GetRegIntVal(kSection, kEntry, &value));
        EXPECT_EQ(c.value, value);
    }
}

TEST_F(Registry, TheUsersValueWinsWhenItCanBeRead) {
    const auto text = [] {
        RWWString found;
        return GetRegStringVal(kSection, kEntry, &found) ? found : RWWString(L"none");
    };
    EXPECT_EQ(L"none", text());
    registry_.Put(kMachine, kSection, kEntry, L"machine");
    EXPECT_EQ(L"machine", text());
    registry_.Put(kUser, kSection, kEntry, L"user");
    EXPECT_EQ(L"user", text());
    registry_.Put(kUser, kSection, kEntry, 5);
    EXPECT_EQ(L"machine", text());
    unsigned number = 0;
    EXPECT_TRUE(GetRegIntVal(kSection, kEntry, &number));
    EXPECT_EQ(5u, number);
    registry_.Put(kMachine, kSection, kEntry, 6);
    EXPECT_TRUE(GetRegIntVal(kSection, kEntry, &number));
    EXPECT_EQ(5u, number) << "though the machine has one";
}

TEST_F(Registry, OneRootIsReadWithoutTheOtherAndNoSectionIsTheBaseKey) {
    registry_.Put(kUser, kSection, kEntry, L"C:\\User\\\\");
    registry_.Put(kMachine, kSection, L"Number", 3);
    EXPECT_EQ(L"C:\\User\\\\", GetQLRegStringEx(kSection, kEntry, false));
    EXPECT_EQ(L"", GetQLRegStringEx(kSection, kEntry, true));
    EXPECT_EQ(L"C:\\User\\", GetQLProfileDirEx(kSection, kEntry, false));
    RegistryValue value{REG_BINARY, {1}};
    EXPECT_FALSE(ReadRegValue(kSection, L"Number", false, value));
    EXPECT_EQ((RegistryValue{REG_BINARY, {1}}), value);
    EXPECT_TRUE(ReadRegValue(kSection, L"Number", true, value));
    EXPECT_EQ((RegistryValue{REG_DWORD, {3, 0, 0, 0}}), value);
    registry_.Put(kUser, L"", L"", L"default value");
    for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""})
        EXPECT_EQ(L"default value", GetQLRegStringEx(none, none, false));
}

TEST_F(Registry, ValuesOfAnyTypeAndSizeAreReadAndWrittenWhole) {
    const RegistryValue values[] = {{REG_BINARY, {}},
                                    {REG_MULTI_SZ, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}},
                                    {0x12345678, std::vector<unsigned char>(100000, 9)}};
    for (const RegistryValue& value : values) {
        RegistryValue stored;
        EXPECT_TRUE(WriteRegValue(L"New", kEntry, value)) << value.type;
        EXPECT_TRUE(ReadRegValue(L"New", kEntry, false, stored)) << value.type;
        EXPECT_EQ(value, stored);
    }
    EXPECT_TRUE(DeleteRegValue(L"New", kEntry));
    EXPECT_FALSE(DeleteRegValue(L"New", kEntry));
}

TEST_F(Registry, BooleansAreTextsAndAnyOtherTextIsFalse) {
    const std::pair<const wchar_t*, bool> cases[] = {
        {g_trueStr, true}, {L"TRUE", true}, {g_falseStr, false}, {L"maybe", false}, {L"", false}};
    for (const auto& [text, expected] : cases) {
        registry_.Put(kUser, kSection, kEntry, text);
        bool value = !expected;
        EXPECT_TRUE(GetRegBoolVal(kSection, kEntry, &value) && value == expected) << text;
    }
    registry_.Put(kUser, kSection, kEntry, 1);
    bool value = true;
    EXPECT_TRUE(!GetRegBoolVal(kSection, kEntry, &value) && value);
}

TEST_F(Registry, ColoursAreThreeMaskedNumbers) {
    const std::pair<const wchar_t*, unsigned long> cases[] = {
        {L"255,128,0", 33023}, {L"300,0,0", 44}, {L"0,-1,0", 0xff00}, {L" 1, 2,3 and more,4", 0x30201},
        {L"red,,", 0},         {L"1,2,", 0x201}, {L"", 99},           {L"12", 99},
        {L"1,2", 99},          {L",1,2", 99},    {L",,", 99},         {L"99999999999,0,0", 0xff},
    };
    for (const auto& [text, color] : cases) EXPECT_EQ(color, QLRegStringToColor(text, 99)) << text;
}

TEST_F(Registry, ReadsWhatThePreviousGenerationLeft) {
    EXPECT_EQ(L"", GetOldQLRegString(kSection, kEntry, nullptr));
    EXPECT_EQ(L"default", GetOldQLRegString(kSection, kEntry, L"default"));
    const std::wstring path = L"SOFTWARE\\Brellwick\\Quillet 6\\Locations";
    registry_.PutBytes(kMachine, path, kEntry, REG_SZ, L"old", sizeof L"old");
    EXPECT_EQ(L"old", _GetOldQLProfileString(kSection, kEntry));
    EXPECT_EQ(L"old", GetOldQLRegString(kSection, kEntry, L"default"));
    registry_.PutBytes(kUser, path, kEntry, REG_SZ, L"", sizeof L"");
    EXPECT_EQ(L"default", GetOldQLRegString(kSection, kEntry, L"default"));
}

std::vector<std::wstring> Names(EnumQLEntries entries) {
    std::vector<std::wstring> names;
    RWWString name;
    while (entries.GetNextEntry(name)) names.push_back(name.str());
    EXPECT_EQ(entries.NumEntries(), names.size());
    EXPECT_FALSE(entries.GetNextEntry(name));
    return names;
}

TEST_F(Registry, EntriesOfBothRootsAreListedOnce) {
    using Texts = std::vector<std::wstring>;
    EXPECT_EQ(Texts(), Names(EnumQLEntries(kSection)));
    registry_.Put(kUser, kSection, L"Mine", L"");
    registry_.Put(kUser, kSection, L"Shared", 1);
    registry_.Put(kMachine, kSection, L"SHARED", L"");
    registry_.Put(kMachine, kSection, L"Yours", L"");
    EXPECT_EQ((Texts{L"Mine", L"Shared", L"Yours"}), Names(EnumQLEntries(kSection)));
    EXPECT_EQ((Texts{L"SHARED", L"Yours"}), Names(EnumQLEntries(kSection, true)));
    EXPECT_EQ((Texts{L"Mine", L"Shared"}),
              Names(EnumQLEntries(PrivateRegistry::Path(kSection).c_str(), false, false)));
}

TEST_F(Registry, AnEntryNameAtTheSystemsLimitIsListed) {
    const std::wstring longest(16383, L'n');
    registry_.Put(kUser, kSection, longest.c_str(), L"");
    registry_.Put(kUser, kSection, L"", L"");
    EXPECT_THAT(Names(EnumQLEntries(kSection)), testing::UnorderedElementsAre(longest, L""));
}

TEST_F(Registry, SectionsAreHandedOutOneByOne) {
    EXPECT_EQ(L"", EnumQLSections(L"Word Proc", false).GetNextSection());
    registry_.Put(kUser, L"Word Proc\\One", kEntry, L"");
    registry_.Put(kUser, L"Word Proc\\Two", kEntry, L"");
    EnumQLSections sections(kUser, PrivateRegistry::Path(L"Word Proc").c_str());
    for (const wchar_t* name : {L"One", L"Two", L"", L""}) EXPECT_EQ(name, sections.GetNextSection());
    EXPECT_EQ(L"Word Proc", EnumQLSections(nullptr, false).GetNextSection());
    EXPECT_EQ(L"", EnumQLSections(L"Word Proc", true).GetNextSection());
}

TEST_F(Registry, AKeyDeletedWhileItIsWalkedEndsTheWalk) {
    registry_.Put(kUser, L"Plugins\\One", kEntry, L"");
    EnumQLSections sections(L"Plugins", false);
    ::RegDeleteTreeW(kUser, PrivateRegistry::Path(L"Plugins").c_str());
    EXPECT_EQ(L"", sections.GetNextSection());
}

}  // namespace
