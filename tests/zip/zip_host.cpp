// Calls the engines beside it as the arguments say, for tests that look on from outside:
//   zip_host zip|unzip KEY=VALUE...    a field of the command record each
// Exits with the engine's code.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/win32.h"
#include "zip/zip_records.h"

// Wild cards are the engines' to expand.
extern "C" {
int _dowildcard = 0;
}

namespace {

template <class Record>
struct Field {
    const char* key;
    std::int32_t Record::*number;
    const char* Record::*text = nullptr;
};
constexpr Field<ZIPCMDSTRUCT> kZipFields[] = {
    {"function", &ZIPCMDSTRUCT::function},           {"level", &ZIPCMDSTRUCT::compFactor},
    {"recurse", &ZIPCMDSTRUCT::recurseFlag},         {"nofolders", &ZIPCMDSTRUCT::noDirectoryNamesFlag},
    {"addcomment", &ZIPCMDSTRUCT::addCommentFlag},   {"archive", nullptr, &ZIPCMDSTRUCT::lpszZIPFile},
    {"items", nullptr, &ZIPCMDSTRUCT::lpszItemList}, {"comment", nullptr, &ZIPCMDSTRUCT::lpszComment},
};
constexpr Field<UNZIPCMDSTRUCT> kUnzipFields[] = {
    {"function", &UNZIPCMDSTRUCT::function},
    {"overwrite", &UNZIPCMDSTRUCT::overWriteFlag},
    {"recurse", &UNZIPCMDSTRUCT::recurseFlag},
    {"archive", nullptr, &UNZIPCMDSTRUCT::lpszZIPFile},
    {"pattern", nullptr, &UNZIPCMDSTRUCT::lpszFilespec},
    {"to", nullptr, &UNZIPCMDSTRUCT::lpszDestination},
};

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "zip_host: %s\n", what.c_str());
    std::exit(255);
}

template <class Record, std::size_t count>
void Fill(Record& record, const Field<Record> (&fields)[count], char** arguments) {
    for (; *arguments; ++arguments) {
        const std::size_t length = std::strcspn(*arguments, "=");
        const std::string key(*arguments, length);
        const Field<Record>* field = fields;
        while (field != fields + count && key != field->key) ++field;
        if (field == fields + count || (*arguments)[length] == '\0') Fail("cannot take " + key);
        const char* value = *arguments + length + 1;
        if (field->text) record.*field->text = value;
        if (field->number) record.*field->number = std::atoi(value);
    }
}

template <class Proc, class Record>
int Call(const char* dll, const char* entry, Record& record) {
    const HMODULE module = ::LoadLibraryA(dll);
    const FARPROC proc = module ? ::GetProcAddress(module, entry) : nullptr;
    if (!proc) Fail(std::string("no ") + entry + " in " + dll);
    return reinterpret_cast<Proc>(reinterpret_cast<void*>(proc))(&record);
}

}  // namespace

int main(int count, char** arguments) {
    const std::string what = count > 2 ? arguments[1] : "";
    if (what == "zip") {
        ZIPCMDSTRUCT command{};
        command.zipStructSize = sizeof command;
        command.compFactor = 5;
        Fill(command, kZipFields, arguments + 2);
        return Call<DzipProc>("DZIP32.DLL", "dzip", command);
    }
    if (what != "unzip") Fail("zip or unzip, please");
    UNZIPCMDSTRUCT command{};
    command.unzipStructSize = sizeof command;
    Fill(command, kUnzipFields, arguments + 2);
    return Call<DunzipProc>("DUNZIP32.DLL", "dunzip", command);
}
