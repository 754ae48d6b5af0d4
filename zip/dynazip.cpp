#include "zip/dynazip.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/failure.h"
#include "platform/long_number.h"
#include "platform/win32.h"
#include "prefs/known_directory.h"
#include "text/ansi_text.h"
#include "text/unicode.h"

namespace {

// An operation that gets a name that it cannot hand on.
constexpr int kNotAcceptable = ZIP_BAD_REQUEST;

// With the ending zero; no archive has a longer one.
constexpr std::size_t kCommentRoom = 65536;

// What InitZIPCmdStruct leaves for the caller to replace.
constexpr std::int32_t kNoZipFunction = 6;
constexpr std::int32_t kUsualFactor = 5;

// --- Loading

// From the folder of this library's module, which is the program directory; its path ends with a backslash.
// What an engine needs in turn comes from its own folder, the program's or the system's: never by way of the
// current folder or of PATH.
HMODULE LoadEngine(const wchar_t* dll) {
    constexpr DWORD kPlaces = LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
    const std::wstring path = ql::KnownDirectory(ProgramDirectory).str() + dll;
    return ::LoadLibraryExW(path.c_str(), nullptr, kPlaces);
}

template <class Proc>
Proc Find(HMODULE module, const char* entryPoint) {
    const FARPROC found = module ? ::GetProcAddress(module, entryPoint) : nullptr;
    return reinterpret_cast<Proc>(reinterpret_cast<void*>(found));
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
    proc = Find<Proc>(module, entryPoint);
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

// The ANSI form of a text that has one.
std::optional<std::string> Ansi(const wchar_t* text) {
    const std::wstring_view wide = text ? text : L"";
    if (wide.empty()) return std::string();
    BOOL lossy = FALSE;
    std::string ansi(static_cast<std::size_t>(Narrow(wide, nullptr, 0, nullptr)), '\0');
    const int length = Narrow(wide, ansi.data(), static_cast<int>(ansi.size()), &lossy);
    if (length == 0 || lossy) return std::nullopt;
    return ansi;
}

// The ANSI form of an acceptable name. A double quote would end the name in an item list.
std::optional<std::string> AnsiName(const wchar_t* name) {
    const bool hasQuote = name && std::wstring_view(name).find(L'"') != std::wstring_view::npos;
    return hasQuote ? std::nullopt : Ansi(name);
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

// Where each thread keeps the code of its last operation. The compiler's own memory by thread ends the
// process where there is none left.
class CodeSlot {
  public:
    CodeSlot() noexcept : index_(::TlsAlloc()) {}
    ~CodeSlot() { ::TlsFree(index_); }
    CodeSlot(const CodeSlot&) = delete;
    CodeSlot& operator=(const CodeSlot&) = delete;

    int Set(int code) const noexcept {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): what a slot holds
        ::TlsSetValue(index_, reinterpret_cast<void*>(static_cast<std::intptr_t>(code)));
        return code;
    }
    int Get() const noexcept {
        return static_cast<int>(reinterpret_cast<std::intptr_t>(::TlsGetValue(index_)));
    }

  private:
    const DWORD index_;
};

const CodeSlot g_lastCode;

template <class Proc, class... Argument>
int Call(Proc engine, Argument... arguments) {
    return g_lastCode.Set(engine ? engine(arguments...) : ZIP_ENGINE_NOT_LOADED);
}
int NotAcceptable() {
    return g_lastCode.Set(kNotAcceptable);
}

// The answer of an operation. One that finds no memory has the code that both engines have for that.
template <class Answer, class Operation>
Answer Operate(std::type_identity_t<Answer> failure, Operation operation) noexcept {
    static_assert(int{ZIP_NO_MEMORY} == int{UNZIP_NO_MEMORY});
    if (Answer answer{}; ql::Completes([&] { answer = operation(); })) return answer;
    g_lastCode.Set(ZIP_NO_MEMORY);
    return failure;
}

// Of one that answers no code.
template <class Answer, class Operation>
Answer Operate(Operation operation) noexcept {
    return Operate<Answer>({}, operation);
}

// An engine of another maker cannot do it.
int CallEach(HMODULE engine, UNZIPCMDSTRUCT& command, ZipMemberProc each, void* userData) {
    const auto proc = Find<DunzipEachProc>(engine, "dunzipeach");
    if (engine && !proc) return g_lastCode.Set(UNZIP_BAD_REQUEST);
    return Call(proc, &command, each, userData);
}

ZIPMEMBER MemberOf(const ZIPINFO& info, int index, int code, const std::wstring& name) {
    const bool isFolder = name.ends_with(L'/') || name.ends_with(L'\\');
    return {index,
            code,
            name.c_str(),
            info.szFileName,
            info.szDateTime,
            info.oSize,
            info.cSize,
            info.crc_32,
            info.attr,
            info.cMethod,
            0,
            isFolder,
            (info.attr & ZIPINFO_ENCRYPTED) != 0};
}

// With an engine that tells one member a call: what its record can express.
int WalkRecords(const wchar_t* zipFile, ZipMemberProc each, void* userData) {
    constexpr int kMostRecords = 0x10000;  // an index has sixteen bits
    for (int index = 0; index < kMostRecords; ++index) {
        ZIPINFO info{};
        const int code = Dynazip::GetIndexedZipInfo(zipFile, index, &info);
        info.szFileName[std::size(info.szFileName) - 1] = info.szDateTime[std::size(info.szDateTime) - 1] =
            '\0';
        if (code == UNZIP_OUT_OF_BOUNDS) break;
        if (code != UNZIP_DONE && code != UNZIP_SKIPPED) return code;
        const std::wstring name = AnsiToRWWString(info.szFileName).str();
        const ZIPMEMBER member = MemberOf(info, index, code, name);
        if (each(&member, userData) != 0) return g_lastCode.Set(UNZIP_CANCELLED);
    }
    return g_lastCode.Set(UNZIP_DONE);
}

// With an engine that knows no lists. Only such a one can name a member otherwise than its file.
int AddAlone(const wchar_t* zipFile, const ZIPSOURCE& source, int option) {
    const std::wstring path = source.file ? source.file : L"";
    const std::size_t last = path.find_last_of(L"\\/") + 1;
    if (source.name && path.substr(last) != source.name) return ZIP_BAD_REQUEST;
    const std::wstring folder = last == 0 ? L"." : path.substr(0, last - 1);
    Dynazip::AddFileToZip(zipFile, folder.c_str(), path.c_str() + last, option);
    return g_lastCode.Get();
}

void AddEachAlone(const wchar_t* zipFile, std::span<ZIPSOURCE> files, int option) {
    for (ZIPSOURCE& file : files)
        file.code = ql::FailureIfThrown(int{ZIP_NO_MEMORY}, [&] { return AddAlone(zipFile, file, option); });
}

void SetCodes(std::span<ZIPSOURCE> all, int code) {
    for (ZIPSOURCE& file : all) file.code = code;
}

// Those that are not acceptable have no code of the engine's. Answers 1 when all are in the archive.
int TakeCodes(std::span<ZIPSOURCE> all, const std::vector<ZIPSOURCE>& acceptable) {
    auto next = acceptable.begin();
    bool areAllDone = true;
    for (ZIPSOURCE& file : all) {
        const bool isNext = next != acceptable.end() && next->file == file.file && next->name == file.name;
        file.code = isNext ? (next++)->code : kNotAcceptable;
        areAllDone = areAllDone && file.code == ZIP_DONE;
    }
    return areAllDone ? 1 : 0;
}

// "MM/DD/YY HH:MM:SS", local; years from 80 on are of the last century.
std::int64_t TimeOf(const ZIPINFO& info) {
    const char* text = info.szDateTime;
    const auto number = [text](int at) {
        return static_cast<WORD>((text[at] - '0') * 10 + (text[at + 1] - '0'));
    };
    const auto year = static_cast<WORD>(ZipFullYear(number(6)));
    const SYSTEMTIME local{year, number(0), 0, number(3), number(9), number(12), number(15), 0};
    SYSTEMTIME utc;
    FILETIME time;
    if (!::TzSpecificLocalTimeToSystemTime(nullptr, &local, &utc) || !::SystemTimeToFileTime(&utc, &time))
        return -1;
    constexpr std::int64_t kTicksASecond = 10'000'000, kFrom1601To1970 = 11'644'473'600;
    const std::int64_t ticks = static_cast<std::int64_t>(ql::Join(time.dwHighDateTime, time.dwLowDateTime));
    return ticks / kTicksASecond - kFrom1601To1970;
}

// --- Messages

struct Message {
    int code;
    const wchar_t* text;
};

constexpr Message kNotLoaded = {ZIP_ENGINE_NOT_LOADED, L"The zip engine is not loaded"};

constexpr Message kZipMessages[] = {
    {ZIP_BUSY, L"Busy, can't enter now"},
    {ZIP_CUT_OFF, L"Unexpected end of zip file"},
    {ZIP_INVALID, L"Zip file structure invalid"},
    {ZIP_NO_MEMORY, L"Out of memory"},
    {ZIP_LOGIC_ERROR, L"Internal logic error"},
    {ZIP_TOO_BIG_TO_SPLIT, L"Entry too big to split"},
    {ZIP_BAD_COMMENT, L"Invalid comment format"},
    {ZIP_INVALID_OR_NO_MEMORY, L"Zip file invalid or insufficient memory"},
    {ZIP_CANCELLED, L"Application cancelled operation"},
    {ZIP_TEMPORARY_FILE, L"Temporary file failure"},
    {ZIP_READ_FAILED, L"Input file read failure"},
    {ZIP_NOTHING_TO_DO, L"Nothing to do!"},
    {ZIP_MISSING, L"Missing or empty zip file"},
    {ZIP_WRITE_FAILED, L"Output file write failure, possible disk full"},
    {ZIP_CANNOT_CREATE, L"Could not create output file"},
    {ZIP_BAD_REQUEST, L"Invalid combination of control parameters"},
    {ZIP_NOT_COMPLETED, L"Could not complete operation"},
    {ZIP_FILE_MISSING, L"File not found or no read permission"},
    {ZIP_MEDIA_ERROR, L"Media Error Encountered"},
    {ZIP_VOLUMES_ASKED, L"Invalid combination of Multi-Volume control parameters"},
    {ZIP_VOLUMES, L"Improper use of Multi-Volume Zip file"},
    kNotLoaded,
};

constexpr Message kUnzipMessages[] = {
    {UNZIP_CUT_OFF, L"Unexpected end of zip file"},
    {UNZIP_INVALID, L"Zip file structure invalid"},
    {UNZIP_NO_MEMORY, L"Out of memory"},
    {UNZIP_NO_MEMORY_EITHER, L"Out of memory"},
    {UNZIP_MISSING, L"File not found"},
    {UNZIP_NOTHING_TO_DO, L"No files to test, extract, etc."},
    {UNZIP_SAME_VOLUME, L"The same disk volume can not be used as both the source and destination"},
    {UNZIP_OUT_OF_BOUNDS, L"Index out of bounds"},
    {UNZIP_CANNOT_CREATE, L"Error creating output file"},
    {UNZIP_CANNOT_OPEN, L"Error opening archive"},
    {UNZIP_BAD_CRC, L"Bad CRC"},
    {UNZIP_CANCELLED, L"Application cancelled operation"},
    {UNZIP_ENCRYPTED, L"File skipped, encrypted"},
    {UNZIP_UNKNOWN_METHOD, L"File skipped, unknown compression method"},
    {UNZIP_BAD_KEY, L"Bad or missing decrypt code"},
    {UNZIP_BUSY, L"Busy, can't enter now"},
    {UNZIP_VOLUME_LABEL, L"Can't extract a Volume ID item"},
    {UNZIP_BAD_REQUEST, L"Command syntax error"},
    {UNZIP_STOPPED, L"Operation cancelled"},
    {UNZIP_SKIPPED, L"Operation skipped"},
    {UNZIP_DISK_FULL, L"Disk full"},
    {UNZIP_NAME_TAKEN, L"Another member of that name was brought out before"},
    kNotLoaded,
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
    return ql::FailureIfThrown(0, [] { return EnsureEngine(dzipDll, dzipProc, L"DZIP32.DLL", "dzip"); });
}
int Dynazip::IsUnZipDllLoaded() {
    return ql::FailureIfThrown(0,
                               [] { return EnsureEngine(dunzipDll, dunzipProc, L"DUNZIP32.DLL", "dunzip"); });
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
    return Operate<long>([&]() -> long {
        const auto archive = AnsiName(zipFile), folder = AnsiName(directory), name = AnsiName(fileName);
        if (!archive || !folder || !name) return NotAcceptable();
        const std::string items = Quoted(*folder + "\\" + *name);
        ZIPCMDSTRUCT command = ZipCommand(ZIP_UPDATE, *archive, items);
        command.compFactor = option;
        command.growExistingFlag = 1;
        command.noDirectoryNamesFlag = 1;
        return Call(dzipProc, &command) == ZIP_DONE ? 1 : 0;
    });
}

long Dynazip::AddFilesToZip(const wchar_t* zipFile, ZIPSOURCE* files, int count, int option,
                            const ZipProgress& progress) {
    const std::span<ZIPSOURCE> all(files, files && count > 0 ? static_cast<std::size_t>(count) : 0);
    SetCodes(all, ZIP_NO_MEMORY);  // until more is known of them
    return Operate<long>([&]() -> long {
        const auto archive = AnsiName(zipFile);
        if (!archive) {
            SetCodes(all, kNotAcceptable);
            return NotAcceptable();
        }
        if (count == 0) return g_lastCode.Set(ZIP_DONE), 1;
        if (all.empty()) return NotAcceptable(), 0;
        std::vector<ZIPSOURCE> acceptable;
        for (const ZIPSOURCE& file : all) {
            if (AnsiName(file.file) && AnsiName(file.name)) acceptable.push_back(file);
        }
        const std::string noItems;
        ZIPCMDSTRUCT command = ZipCommand(ZIP_UPDATE, *archive, noItems);
        command.compFactor = option;
        command.lpMajorStatus = progress.proc;
        command.lpMajorUserData = progress.userData;
        if (const auto addFiles = Find<DzipFilesProc>(dzipDll, "dzipfiles")) {
            Call(addFiles, &command, acceptable.data(), static_cast<std::int32_t>(acceptable.size()));
        } else {
            AddEachAlone(zipFile, acceptable, option);
        }
        return TakeCodes(all, acceptable);
    });
}

long Dynazip::DeleteFileFromZip(const wchar_t* zipFile, const wchar_t* fileName) {
    return Operate<long>(ZIP_NO_MEMORY, [&]() -> long {
        const auto archive = AnsiName(zipFile), name = AnsiName(fileName);
        if (!archive || !name) return NotAcceptable();
        const std::string items = Quoted(*name);
        ZIPCMDSTRUCT command = ZipCommand(ZIP_DELETE, *archive, items);
        command.lpszTempPath = "trash";
        return Call(dzipProc, &command);
    });
}

long Dynazip::ExtractFileFromZip(const wchar_t* zipFile, const wchar_t* fileName,
                                 const wchar_t* destination) {
    return Operate<long>(UNZIP_NO_MEMORY, [&]() -> long {
        const auto archive = AnsiName(zipFile), name = AnsiName(fileName), folder = AnsiName(destination);
        if (!archive || !name || !folder) return NotAcceptable();
        const std::string items = Quoted(*name);
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_EXTRACT, *archive);
        command.lpszFilespec = items.c_str();
        command.lpszDestination = folder->c_str();
        command.overWriteFlag = 1;
        return Call(dunzipProc, &command);
    });
}

long Dynazip::ExtractMembers(const wchar_t* zipFile, const wchar_t* destination, const ZipExtraction& what,
                             ZipMemberProc each, void* userData) {
    return Operate<long>(UNZIP_NO_MEMORY, [&]() -> long {
        const auto archive = AnsiName(zipFile), folder = AnsiName(destination);
        if (!archive || !folder || !each || (what.count > 0 && !what.names)) return NotAcceptable();
        std::string items;
        for (int i = 0; i < what.count; ++i) {
            const auto name = AnsiName(what.names[i]);
            if (!name) return NotAcceptable();
            items += Quoted(*name) + ' ';
        }
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_EXTRACT, *archive);
        command.lpszFilespec = what.count == 0 ? "*" : items.c_str();
        command.index = what.index;
        command.lpszDestination = folder->c_str();
        command.overWriteFlag = 1;
        command.updateFlag = what.keepsNewer;
        command.testFlag = what.testsOnly;
        command.noDirectoryNamesFlag = command.noDirectoryItemsFlag = !what.withFolders;
        command.lpMajorStatus = what.progress.proc;
        command.lpMajorUserData = what.progress.userData;
        return CallEach(dunzipDll, command, each, userData);
    });
}

long Dynazip::ForEachMember(const wchar_t* zipFile, ZipMemberProc each, void* userData) {
    return Operate<long>(UNZIP_NO_MEMORY, [&]() -> long {
        const auto archive = AnsiName(zipFile);
        if (!archive || !each) return NotAcceptable();
        if (dunzipDll && !Find<DunzipEachProc>(dunzipDll, "dunzipeach"))
            return WalkRecords(zipFile, each, userData);
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COUNT_ALL, *archive);
        return CallEach(dunzipDll, command, each, userData);
    });
}

int Dynazip::FileExistsInZip(const wchar_t* zipFile, const wchar_t* fileName) {
    return Operate<int>([&]() -> int {
        const auto archive = AnsiName(zipFile), name = AnsiName(fileName);
        if (!archive || !name) return NotAcceptable();
        const std::string items = Quoted(*name);
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COUNT_MATCHING, *archive);
        command.lpszFilespec = items.c_str();
        return Call(dunzipProc, &command) == UNZIP_DONE && command.returnCount > 0 ? 1 : 0;
    });
}

RWWString Dynazip::GetComment(const wchar_t* zipFile) {
    return Operate<RWWString>([&]() -> RWWString {
        const auto archive = AnsiName(zipFile);
        if (!archive) {
            NotAcceptable();
            return {};
        }
        // Asking for its size first would trust that the archive stays as it is between the two calls.
        std::string comment(kCommentRoom, '\0');
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COMMENT, *archive);
        command.lpszReturnString = comment.data();
        if (Call(dunzipProc, &command) != UNZIP_DONE) return {};
        comment.resize(std::strlen(comment.c_str()));
        const auto text = ql::FromUtf8(comment);
        return text ? RWWString(*text) : AnsiToRWWString(comment.c_str());
    });
}

int Dynazip::SetComment(const wchar_t* zipFile, const wchar_t* comment) {
    return Operate<int>([&]() -> int {
        const auto archive = AnsiName(zipFile);
        auto text = Ansi(comment);
        if (!archive || !text) return NotAcceptable();
        // Bytes that would be read as UTF-8 must be.
        if (comment && ql::FromUtf8(*text)) text = ql::ToUtf8(comment);
        const std::string noItems;
        ZIPCMDSTRUCT command = ZipCommand(ZIP_ADD, *archive, noItems);
        command.addCommentFlag = 1;
        command.lpszComment = text->c_str();
        return Call(dzipProc, &command) == ZIP_DONE ? 1 : 0;
    });
}

long Dynazip::GetFileDateAndSizeFromZip(const wchar_t* zipFile, const wchar_t* fileName, std::int64_t& time,
                                        int& size) {
    return Operate<long>(UNZIP_NO_MEMORY, [&]() -> long {
        const auto archive = AnsiName(zipFile), name = AnsiName(fileName);
        if (!archive || !name) return NotAcceptable();
        const std::string items = Quoted(*name);
        ZIPINFO info{};
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_NEXT_MATCHING, *archive);
        command.lpszFilespec = items.c_str();
        command.zInfo = &info;
        const int code = Call(dunzipProc, &command);
        if (code != UNZIP_DONE) return code;
        time = TimeOf(info);
        size = static_cast<int>(std::min<std::uint32_t>(info.oSize, INT_MAX));
        return 0;
    });
}

int Dynazip::GetIndexedZipInfo(const wchar_t* zipFile, int index, ZIPINFO* info) {
    return Operate<int>(UNZIP_NO_MEMORY, [&]() -> int {
        const auto archive = AnsiName(zipFile);
        if (!archive || !info) return NotAcceptable();
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_INDEXED, *archive);
        command.index = index;
        command.zInfo = info;
        return Call(dunzipProc, &command);
    });
}

int Dynazip::LastEngineCode() {
    return g_lastCode.Get();
}

const wchar_t* Dynazip::ZipErrorMsg(int code) {
    return MessageOf(kZipMessages, code);
}
const wchar_t* Dynazip::UnzipErrorMsg(int code) {
    return MessageOf(kUnzipMessages, code);
}
