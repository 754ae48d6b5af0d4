#include <optional>

#include "json/diagnosis.h"
#include "json/json.h"
#include "prefs/directories.h"
#include "prefs/interview_globals.h"
#include "settings/preference_layers.h"
#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "tests/memory/failing_memory.h"
#include "tests/support/private_registry.h"

namespace memory {

namespace {

// Names and texts that no string keeps in itself.
constexpr wchar_t kSection[] = L"A section with a name of some length";
constexpr wchar_t kEntry[] =
    L"An entry with a name that is longer than what a usual key has room for, "
    L"so that it is put together in memory of its own";
constexpr wchar_t kNumber[] = L"The number of an entry";
constexpr wchar_t kText[] = L"a text that is longer than a string itself";
const RWWString kFolder(L"Documents\\a letter of some length");
constexpr wchar_t kDocument[] =
    LR"({"12":"a number's text of some length","Sec<-^->Ent":["\u0041",{"b":1,"a":2.5}]})";

// With a started library, in a context of its own or not; afterwards a preference can be written and read.
Row WithLibrary(const char* what, void (*call)(), bool inContext = false) {
    return {what, [=](Attempt& attempt) {
                const PrivateRegistry registry;
                const QLLibraryScope library;
                const QLThreadScope thread;
                std::optional<QLContextScope> context;
                if (inContext) context.emplace();
                PrivateRegistry::Put(kUser, kSection, L"Stored", kText);
                PrivateRegistry::Put(kMachine, kSection, L"Of the machine", kText);
                attempt(call);
                for (const wchar_t* entry : {kEntry, L"Short", L"Stored"}) {
                    RWWString stored;
                    if (GetRegStringVal(kSection, entry, &stored))
                        EXPECT_EQ(stored, GetQLRegString(kSection, entry, nullptr)) << "the store differs";
                }
                WriteQLRegInt(kSection, kNumber, 7);
                EXPECT_EQ(7, GetQLRegInt(kSection, kNumber, 0));
                unsigned stored = 0;
                EXPECT_TRUE(GetRegIntVal(kSection, kNumber, &stored));
                EXPECT_EQ(7u, stored);
            }};
}

}  // namespace

std::vector<Row> SettingsCalls() {
    return {
        Calls("a document parsed, copied, changed and written",
              [] {
                  const auto root = JSON::Parse(kDocument);
                  if (!root) return;
                  root->AddMember(kFolder, root->Clone());
                  JSON::Serialize(root.get());
                  RWWString key;
                  root->FirstMember(key);
              }),
        Calls("a bad document diagnosed", [] { JSON::Diagnose(L"{\"a key of some length\" 1}"); }),
        {"the library started and ended",
         [](Attempt& attempt) {
             attempt([] {
                 const QLLibraryScope library;
                 const QLContextScope context;
                 CQlsSettings::SetThreadRegStrSetting(kSection, kEntry, kText);
             });
             EXPECT_TRUE(QLLibraryScope().ok());
         }},
        WithLibrary("preferences, directories, interview values and the registry read",
                    [] {
                        GetQLRegString(kSection, L"Stored", kText);
                        GetQLRegInt(kSection, kNumber, 5);
                        GetQLRegColor(kSection, L"Stored", 0);
                        FindPreference(kSection, L"Stored");
                        CQlDir::GetDirectory(TemplateDirectory);
                        CQlDir::ConvertSpecialDisplayPathToPath(kFolder);
                        CQlGlobals::GetUnansValDefFormat();
                        RWWString text;
                        EnumQLEntries(kSection).GetNextEntry(text);
                        EnumQLSections(L"", false).GetNextSection();
                        GetRegStringVal(kSection, L"Stored", &text);
                        GetQLProfileDirEx(kSection, L"Of the machine", true);
                        GetOldQLRegString(kSection, kEntry, kText);
                        RegistryValue value;
                        if (ReadRegValue(kSection, L"Stored", false, value))
                            WriteRegValue(kSection, L"Other", value);
                        DeleteRegValue(kSection, L"Other");
                    }),
        WithLibrary("preferences, directories, interview values and a document written, others deleted",
                    [] {
                        WriteQLRegInt(kSection, kNumber, 1);
                        WriteQLRegString(kSection, L"Stored", nullptr);
                        CQlDir::SetLibraryDirectory(kFolder);
                        CQlGlobals::SetIsMonthFirst(false);
                        CQlsSettings store;
                        store.SetFromSerializedSettings(kDocument);
                        RWWString document;
                        store.GetSerializedSettings(&document);
                    }),
        WithLibrary(
            "texts written in a context, one over its own",
            [] {
                CQlsSettings::SetThreadRegStrSetting(kSection, L"Short", L"own");
                WriteQLRegString(kSection, L"Short", kText);
                WriteQLRegString(kSection, kEntry, kText);
            },
            true),
    };
}

}  // namespace memory
