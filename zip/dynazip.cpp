#include "zip/dynazip.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/module.h"
#include "platform/win32.h"
#include "prefs/directories.h"
#include "text/ansi_text.h"

namespace {

constexpr int kNotAcceptable = 16;
constexpr int kNoZipEngine = 17;
constexpr int kNoUnzipEngine = 49;
constexpr int kMaxComment = 65535;

// What InitZIPCmdStruct leaves for the caller to replace.
constexpr std::int32_t kNoZipFunction = 6;
constexpr std::int32_t kUsualFactor = 5;

// --- Loading

std::wstring InProgramDirectory(const wchar_t* dll) {
    std::wstring path = CQlDir::GetDirectory(ProgramDirectory).str();
    path.resize(path.find_last_not_of(L'\\') + 1);
    return path + L"\\" + dll;
}

std::wstring BesideThisModule(const wchar_t* dll) {
    std::wstring path = ql::OwnModulePath();
    path.resize(path.rfind(L'\\') + 1);
    return path + dll;
}

HMODULE LoadEngine(const wchar_t* dll) {
    const HMODULE module = ::LoadLibraryW(InProgramDirectory(dll).c_str());
    return module ? module : ::LoadLibraryW(BesideThisModule(dll).c_str());
}

template <class Proc>
void FreeEngine(HMODULE& module, Proc& proc) {
    if (module) ::FreeLibrary(module);
    module = nullptr;
    proc = nullptr;
}

template <class Proc>
int EnsureEngine(HMODULE& module, Proc& proc, const wchar_t* dll, const char* entryPoint) {
    if (module) return 1;
    module = LoadEngine(dll);
    const FARPROC found = module ? ::GetProcAddress(module, entryPoint) : nullptr;
    proc = reinterpret_cast<Proc>(reinterpret_cast<void*>(found));
    if (!proc) FreeEngine(module, proc);
    return proc ? 1 : 0;
}

// --- Names

int Narrow(std::wstring_view text, char* into, int size, BOOL* lossy) {
    // UTF-8 as the ANSI code page has its own way to say that it cannot.
    const bool isUtf8 = ::GetACP() == CP_UTF8;
    return ::WideCharToMultiByte(CP_ACP, isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS, text.data(),
                                 static_cast<int>(text.size()), into, size, nullptr,
                                 isUtf8 ? nullptr : lossy);
}

// The ANSI form of an acceptable name.
std::optional<std::string> Ansi(const wchar_t* text) {
    const std::wstring_view wide = text ? text : L"";
    if (wide.empty()) return std::string();
    BOOL lossy = FALSE;
    std::string ansi(static_cast<std::size_t>(Narrow(wide, nullptr, 0, nullptr)), '\0');
    const int length = Narrow(wide, ansi.data(), static_cast<int>(ansi.size()), &lossy);
    if (length == 0 || lossy) return std::nullopt;
    return ansi;
}

std::string Quoted(const std::string& name) {
    std::string quoted;
    quoted.append(1, '"').append(name).append(1, '"');
    return quoted;
}

// --- Records

ZIPCMDSTRUCT ZipCommand(ZipFunction function, const std::string& zipFile, const std::string& items) {
    ZIPCMDSTRUCT command;
    Dynazip::InitZIPCmdStruct(&command);
    command.function = function;
    command.lpszZIPFile = zipFile.c_str();
    command.lpszItemList = items.c_str();
    command.quietFlag = 1;
    return command;
}

UNZIPCMDSTRUCT UnzipCommand(UnzipFunction function, const std::string& zipFile) {
    UNZIPCMDSTRUCT command;
    Dynazip::InitUNZIPCmdStruct(&command);
    command.function = function;
    command.lpszZIPFile = zipFile.c_str();
    command.quietFlag = 1;
    return command;
}

int Call(DzipProc engine, ZIPCMDSTRUCT& command) {
    return engine ? engine(&command) : kNoZipEngine;
}
int Call(DunzipProc engine, UNZIPCMDSTRUCT& command) {
    return engine ? engine(&command) : kNoUnzipEngine;
}

// "MM/DD/YY HH:MM:SS", local; years from 80 on are of the last century.
std::int64_t TimeOf(const ZIPINFO& info) {
    const char* text = info.szDateTime;
    const auto number = [text](int at) {
        return static_cast<WORD>((text[at] - '0') * 10 + (text[at + 1] - '0'));
    };
    const auto year = static_cast<WORD>(number(6) < 80 ? 2000 + number(6) : 1900 + number(6));
    const SYSTEMTIME local{year, number(0), 0, number(3), number(9), number(12), number(15), 0};
    SYSTEMTIME utc;
    FILETIME time;
    if (!::TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) || !::SystemTimeToFileTime(&utc, &time))
        return -1;
    constexpr std::int64_t kTicksASecond = 10'000'000, kFrom1601To1970 = 11'644'473'600;
    const std::int64_t ticks = static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return ticks / kTicksASecond - kFrom1601To1970;
}

// --- Messages

struct Message {
    int code;
    const wchar_t* text;
};

constexpr Message kZipMessages[] = {
    {1, L"Busy, can't enter now"},
    {2, L"Unexpected end of zip file"},
    {3, L"Zip file structure invalid"},
    {4, L"Out of memory"},
    {5, L"Internal logic error"},
    {6, L"Entry too big to split"},
    {7, L"Invalid comment format"},
    {8, L"Zip file invalid or insufficient memory"},
    {9, L"Application cancelled operation"},
    {10, L"Temporary file failure"},
    {11, L"Input file read failure"},
    {12, L"Nothing to do!"},
    {13, L"Missing or empty zip file"},
    {14, L"Output file write failure, possible disk full"},
    {15, L"Could not create output file"},
    {16, L"Invalid combination of control parameters"},
    {17, L"Could not complete operation"},
    {18, L"File not found or no read permission"},
    {19, L"Media Error Encountered"},
    {20, L"Invalid combination of Multi-Volume control parameters"},
    {21, L"Improper use of Multi-Volume Zip file"},
};

constexpr Message kUnzipMessages[] = {
    {2, L"Unexpected end of zip file"},
    {3, L"Zip file structure invalid"},
    {4, L"Out of memory"},
    {5, L"Out of memory"},
    {9, L"File not found"},
    {11, L"No files to test, extract, etc."},
    {12, L"The same disk volume can not be used as both the source and destination"},
    {25, L"Index out of bounds"},
    {28, L"Error creating output file"},
    {29, L"Error opening archive"},
    {39, L"Bad CRC"},
    {40, L"Application cancelled operation"},
    {41, L"File skipped, encrypted"},
    {42, L"File skipped, unknown compression method"},
    {44, L"Bad or missing decrypt code"},
    {45, L"Busy, can't enter now"},
    {46, L"Can't extract a Volume ID item"},
    {47, L"Command syntax error"},
    {48, L"Operation cancelled"},
    {49, L"Operation skipped"},
    {50, L"Disk full"},
};

template <std::size_t rows>
const wchar_t* MessageOf(const Message (&table)[rows], int code) {
    const auto row = std::find_if(std::begin(table), std::end(table),
                                  [code](const Message& message) { return message.code == code; });
    return row == std::end(table) ? L"" : row->text;
}

}  // namespace

HINSTANCE__* Dynazip::dzipDll = nullptr;
HINSTANCE__* Dynazip::dunzipDll = nullptr;
DzipProc Dynazip::dzipProc = nullptr;
DunzipProc Dynazip::dunzipProc = nullptr;

int Dynazip::IsZipDllLoaded() {
    return EnsureEngine(dzipDll, dzipProc, L"DZIP32.DLL", "dzip");
}
int Dynazip::IsUnZipDllLoaded() {
    return EnsureEngine(dunzipDll, dunzipProc, L"DUNZIP32.DLL", "dunzip");
}
void Dynazip::FreeZipDll() {
    FreeEngine(dzipDll, dzipProc);
}
void Dynazip::FreeUnZipDll() {
    FreeEngine(dunzipDll, dunzipProc);
}

void Dynazip::InitZIPCmdStruct(ZIPCMDSTRUCT* command) {
    *command = {};
    command->zipStructSize = sizeof *command;
    command->function = kNoZipFunction;
    command->compFactor = kUsualFactor;
}

void Dynazip::InitUNZIPCmdStruct(UNZIPCMDSTRUCT* command) {
    *command = {};
    command->unzipStructSize = sizeof *command;
    command->index = -1;
    command->noDirectoryNamesFlag = 1;
    command->recurseFlag = 1;
    command->noDirectoryItemsFlag = 1;
}

long Dynazip::AddFileToZip(const wchar_t* zipFile, const wchar_t* directory, const wchar_t* fileName,
                           int option) {
    const auto archive = Ansi(zipFile), folder = Ansi(directory), name = Ansi(fileName);
    if (!archive || !folder || !name) return kNotAcceptable;
    const std::string items = Quoted(*folder + "\\" + *name);
    ZIPCMDSTRUCT command = ZipCommand(ZIP_UPDATE, *archive, items);
    command.compFactor = option;
    command.growExistingFlag = 1;
    command.noDirectoryNamesFlag = 1;
    return Call(dzipProc, command) == 0 ? 1 : 0;
}

long Dynazip::DeleteFileFromZip(const wchar_t* zipFile, const wchar_t* fileName) {
    const auto archive = Ansi(zipFile), name = Ansi(fileName);
    if (!archive || !name) return kNotAcceptable;
    const std::string items = Quoted(*name);
    ZIPCMDSTRUCT command = ZipCommand(ZIP_DELETE, *archive, items);
    command.lpszTempPath = "trash";
    return Call(dzipProc, command);
}

long Dynazip::ExtractFileFromZip(const wchar_t* zipFile, const wchar_t* fileName,
                                 const wchar_t* destination) {
    const auto archive = Ansi(zipFile), name = Ansi(fileName), folder = Ansi(destination);
    if (!archive || !name || !folder) return kNotAcceptable;
    const std::string items = Quoted(*name);
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_EXTRACT, *archive);
    command.lpszFilespec = items.c_str();
    command.lpszDestination = folder->c_str();
    command.overWriteFlag = 1;
    return Call(dunzipProc, command);
}

int Dynazip::FileExistsInZip(const wchar_t* zipFile, const wchar_t* fileName) {
    const auto archive = Ansi(zipFile), name = Ansi(fileName);
    if (!archive || !name) return kNotAcceptable;
    const std::string items = Quoted(*name);
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COUNT_MATCHING, *archive);
    command.lpszFilespec = items.c_str();
    return Call(dunzipProc, command) == 0 && command.returnCount > 0 ? 1 : 0;
}

RWWString Dynazip::GetComment(const wchar_t* zipFile) {
    const auto archive = Ansi(zipFile);
    if (!archive) return RWWString();
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COMMENT_SIZE, *archive);
    if (Call(dunzipProc, command) != 0 || command.returnCount <= 0 || command.returnCount > kMaxComment)
        return RWWString();
    std::vector<char> comment(static_cast<std::size_t>(command.returnCount) + 1);
    command.function = UNZIP_COMMENT;
    command.lpszReturnString = comment.data();
    if (Call(dunzipProc, command) != 0) return RWWString();
    comment.back() = '\0';
    return AnsiToRWWString(comment.data());
}

int Dynazip::SetComment(const wchar_t* zipFile, const wchar_t* comment) {
    const auto archive = Ansi(zipFile), text = Ansi(comment);
    if (!archive || !text) return kNotAcceptable;
    const std::string noItems;
    ZIPCMDSTRUCT command = ZipCommand(ZIP_ADD, *archive, noItems);
    command.addCommentFlag = 1;
    command.lpszComment = text->c_str();
    return Call(dzipProc, command) == 0 ? 1 : 0;
}

long Dynazip::GetFileDateAndSizeFromZip(const wchar_t* zipFile, const wchar_t* fileName, std::int64_t& time,
                                        int& size) {
    const auto archive = Ansi(zipFile), name = Ansi(fileName);
    if (!archive || !name) return kNotAcceptable;
    const std::string items = Quoted(*name);
    ZIPINFO info{};
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_NEXT_MATCHING, *archive);
    command.lpszFilespec = items.c_str();
    command.zInfo = &info;
    const int code = Call(dunzipProc, command);
    if (code != 0) return code;
    time = TimeOf(info);
    size = static_cast<int>(std::min<std::uint32_t>(info.oSize, INT_MAX));
    return 0;
}

int Dynazip::GetIndexedZipInfo(const wchar_t* zipFile, int index, ZIPINFO* info) {
    const auto archive = Ansi(zipFile);
    if (!archive || !info) return kNotAcceptable;
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_INDEXED, *archive);
    command.index = index;
    command.zInfo = info;
    return Call(dunzipProc, command);
}

const wchar_t* Dynazip::ZipErrorMsg(int code) {
    return MessageOf(kZipMessages, code);
}
const wchar_t* Dynazip::UnzipErrorMsg(int code) {
    return MessageOf(kUnzipMessages, code);
}
