#include "settings/registry.h"

#include <gmock/gmock.h>

#include "tests/support/private_registry.h"

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
                 {REG_SZ, true, L"\xd83d", 0, L"\xd83d"},
                 {REG_SZ, true, L"odd", 1, L"odd"},
                 {REG_SZ, true, L"", 1, L""},
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
    const struct {
        DWORD type;
        std::size_t count;
        unsigned value;
    } cases[] = {{REG_DWORD, 4, 0xf2345678}, {REG_BINARY, 4, 0xf2345678},
                 {REG_SZ, 4, 0xf2345678},    {REG_BINARY, 3, 0x345678},
                 {REG_BINARY, 1, 0x78},      {REG_BINARY, 0, 0},
                 {REG_BINARY, 5, 7},         {REG_QWORD, 8, 7}};
    for (const auto& c : cases) {
        PutUser(c.type, bytes, c.count);
        unsigned value = 7;
        EXPECT_EQ(c.count <= 4, GetRegIntVal(kSection, kEntry, &value)) << c.type << " " << c.count;
        EXPECT_EQ(c.value, value) << c.type << " " << c.count;
    }
}

TEST_F(Registry, TheUsersValueWinsWhenItCanBeRead) {
    EXPECT_EQ(L"none", Text());
    for (const HKEY root : {kMachine, kUser}) {
        registry_.Put(root, kSection, kEntry, root == kUser ? L"user" : L"machine");
        EXPECT_EQ(root == kUser ? L"user" : L"machine", Text());
    }
    registry_.Put(kUser, kSection, kEntry, 5);
    EXPECT_EQ(L"machine", Text());
    registry_.Put(kMachine, kSection, kEntry, 6);
    unsigned number = 0;
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
    for (const auto& value :
         {RegistryValue{REG_BINARY, {}}, {0x12345678, std::vector<unsigned char>(100000, 9)}}) {
        RegistryValue stored;
        EXPECT_TRUE(WriteRegValue(L"New", kEntry, value)) << value.type;
        EXPECT_TRUE(ReadRegValue(L"New", kEntry, false, stored)) << value.type;
        EXPECT_EQ(value, stored);
    }
    EXPECT_TRUE(DeleteRegValue(L"New", kEntry));
    EXPECT_FALSE(DeleteRegValue(L"New", kEntry));
}

TEST_F(Registry, BooleansAreTextsAndAnyOtherTextIsFalse) {
    bool value = true;
    for (const auto& [text, expected] : {std::pair(L"", false),
                                         {g_trueStr, true},
                                         {L"maybe", false},
                                         {L"TRUE", true},
                                         {g_falseStr, false}}) {
        registry_.Put(kUser, kSection, kEntry, text);
        EXPECT_TRUE(GetRegBoolVal(kSection, kEntry, &value)) << text;
        EXPECT_EQ(expected, value) << text;
    }
    value = true;
    registry_.Put(kUser, kSection, kEntry, 1);
    EXPECT_FALSE(GetRegBoolVal(kSection, kEntry, &value));
    EXPECT_TRUE(value);
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
    EXPECT_EQ(L"", _GetOldQLProfileString(kSection, kEntry));
    const std::wstring path = L"SOFTWARE\\Brellwick\\Quillet 6\\Locations";
    registry_.PutBytes(kMachine, path, kEntry, REG_SZ, L"old", sizeof L"old");
    EXPECT_EQ(L"old", _GetOldQLProfileString(kSection, kEntry));
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
    const std::wstring longest(16383, L'n');
    EXPECT_EQ(Texts(), Names(EnumQLEntries(kSection)));
    registry_.Put(kUser, kSection, L"Shared", 1);
    registry_.Put(kMachine, kSection, L"SHARED", L"");
    for (const auto& name : {longest, std::wstring()}) registry_.Put(kMachine, kSection, name.c_str(), L"");
    EXPECT_THAT(Names(EnumQLEntries(kSection)), testing::UnorderedElementsAre(longest, L"", L"Shared"));
    EXPECT_THAT(Names(EnumQLEntries(kSection, true)), testing::UnorderedElementsAre(longest, L"", L"SHARED"));
    EXPECT_EQ(Texts{L"Shared"}, Names(EnumQLEntries(PrivateRegistry::Path(kSection).c_str(), false, false)));
}

TEST_F(Registry, SectionsAreHandedOutOneByOneUntilTheirKeyIsDeleted) {
    EXPECT_EQ(L"", EnumQLSections(L"Word Proc", false).GetNextSection());
    registry_.Put(kUser, L"Word Proc\\One", kEntry, L"");
    registry_.Put(kUser, L"Word Proc\\Two", kEntry, L"");
    EnumQLSections sections(kUser, PrivateRegistry::Path(L"Word Proc").c_str()), walked(L"Word Proc", false);
    for (const wchar_t* name : {L"One", L"Two", L"", L""}) EXPECT_EQ(name, sections.GetNextSection());
    EXPECT_EQ(L"Word Proc", EnumQLSections(nullptr, false).GetNextSection());
    EXPECT_EQ(L"", EnumQLSections(L"Word Proc", true).GetNextSection());
    ::RegDeleteTreeW(kUser, PrivateRegistry::Path(L"Word Proc").c_str());
    EXPECT_EQ(L"", walked.GetNextSection());
}

}  // namespace
