// Calls the engines beside it as the arguments say, for tests that look on from outside:
//   zip_host zip|unzip KEY=VALUE...    a field of the command record each; prints the code, "returnCount" and
//   the text zip_host list ARCHIVE              a line for each member: name, size, packed size, check sum,
//   time, attributes
// Exits with the engine's code.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "zip/zip_records.h"

// Wild cards are the engines' to expand.
extern "C" {
int _dowildcard = 0;
}

namespace {

template <class Record>
struct Flag {
    const char* key;
    std::int32_t Record::*field;
};
template <class Record>
struct Text {
    const char* key;
    const char* Record::*field;
};

constexpr Flag<ZIPCMDSTRUCT> kZipFlags[] = {
    {"function", &ZIPCMDSTRUCT::function},
    {"level", &ZIPCMDSTRUCT::compFactor},
    {"recurse", &ZIPCMDSTRUCT::recurseFlag},
    {"nofolders", &ZIPCMDSTRUCT::noDirectoryNamesFlag},
    {"nofolderentries", &ZIPCMDSTRUCT::noDirectoryEntriesFlag},
    {"addcomment", &ZIPCMDSTRUCT::addCommentFlag},
};
constexpr Text<ZIPCMDSTRUCT> kZipTexts[] = {
    {"archive", &ZIPCMDSTRUCT::lpszZIPFile},
    {"items", &ZIPCMDSTRUCT::lpszItemList},
    {"comment", &ZIPCMDSTRUCT::lpszComment},
};
constexpr Flag<UNZIPCMDSTRUCT> kUnzipFlags[] = {
    {"function", &UNZIPCMDSTRUCT::function},
    {"overwrite", &UNZIPCMDSTRUCT::overWriteFlag},
    {"test", &UNZIPCMDSTRUCT::testFlag},
    {"recurse", &UNZIPCMDSTRUCT::recurseFlag},
    {"nofolders", &UNZIPCMDSTRUCT::noDirectoryNamesFlag},
};
constexpr Text<UNZIPCMDSTRUCT> kUnzipTexts[] = {
    {"archive", &UNZIPCMDSTRUCT::lpszZIPFile},
    {"pattern", &UNZIPCMDSTRUCT::lpszFilespec},
    {"to", &UNZIPCMDSTRUCT::lpszDestination},
};

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "zip_host: %s\n", what.c_str());
    std::exit(255);
}

template <class Record, std::size_t flags, std::size_t texts>
void Fill(Record& record, int count, char** arguments, const Flag<Record> (&flagTable)[flags],
          const Text<Record> (&textTable)[texts]) {
    for (int i = 0; i < count; ++i) {
        char* value = std::strchr(arguments[i], '=');
        if (!value) Fail("KEY=VALUE, please");
        const std::string key(arguments[i], value++);
        bool known = false;
        for (const auto& row : flagTable)
            if (key == row.key) record.*row.field = std::atoi(value), known = true;
        for (const auto& row : textTable)
            if (key == row.key) record.*row.field = value, known = true;
        if (!known) Fail("unknown: " + key);
    }
}

template <class Proc>
Proc Load(const char* dll, const char* entry) {
    const HMODULE module = ::LoadLibraryA(dll);
    const FARPROC proc = module ? ::GetProcAddress(module, entry) : nullptr;
    if (!proc) Fail(std::string("no ") + entry + " in " + dll);
    return reinterpret_cast<Proc>(reinterpret_cast<void*>(proc));
}

int Zip(int count, char** arguments) {
    ZIPCMDSTRUCT command{};
    command.zipStructSize = sizeof command;
    command.compFactor = 5;
    Fill(command, count, arguments, kZipFlags, kZipTexts);
    return Load<DzipProc>("DZIP32.DLL", "dzip")(&command);
}

DunzipProc Unzipper() {
    return Load<DunzipProc>("DUNZIP32.DLL", "dunzip");
}

int Unzip(int count, char** arguments) {
    UNZIPCMDSTRUCT command{};
    command.unzipStructSize = sizeof command;
    std::vector<char> text(65536);
    command.lpszReturnString = text.data();
    Fill(command, count, arguments, kUnzipFlags, kUnzipTexts);
    const int code = Unzipper()(&command);
    std::printf("%d\n%s", static_cast<int>(command.returnCount), text.data());
    return code;
}

int List(const char* archive) {
    UNZIPCMDSTRUCT command{};
    command.unzipStructSize = sizeof command;
    command.function = UNZIP_NEXT;
    command.lpszZIPFile = archive;
    command.index = -1;
    ZIPINFO info;
    command.zInfo = &info;
    const DunzipProc dunzip = Unzipper();
    int code;
    while ((code = dunzip(&command)) == 0) {
        std::printf("%s\t%u\t%u\t%08x\t%s\t%u\n", info.szFileName, static_cast<unsigned>(info.oSize),
                    static_cast<unsigned>(info.cSize), static_cast<unsigned>(info.crc_32), info.szDateTime,
                    static_cast<unsigned>(info.attr));
    }
    return code == 25 ? 0 : code;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string what = count > 2 ? arguments[1] : "";
    if (what == "zip") return Zip(count - 2, arguments + 2);
    if (what == "unzip") return Unzip(count - 2, arguments + 2);
    if (what == "list") return List(arguments[2]);
    Fail("zip, unzip or list, please");
}
