#pragma once

// The records that the two zip engines take: byte for byte those of their published interface, 32-bit, packed
// to two bytes, all text in the ANSI code page. Pointers are the caller's; an engine keeps none of them after
// its call.
#include <cstddef>
#include <cstdint>

#ifdef _WIN32
#define QL_ZIP_CALL __stdcall
#else
#define QL_ZIP_CALL
#endif

// Told during a call how far the item (minor) or the whole call (major) is, in percent; another answer than 0
// cancels the call.
using ZipStatusProc = int(QL_ZIP_CALL*)(const char* item, int percent, void* userData);

// Dates have years of two digits. Those from 80 on, where the format's own time begins, are of the last
// century.
constexpr int ZipFullYear(int twoDigits) {
    return twoDigits < 80 ? 2000 + twoDigits : 1900 + twoDigits;
}

// ZIPCMDSTRUCT::function.
enum ZipFunction : std::int32_t {
    ZIP_NONE = 0,
    ZIP_FRESHEN = 1,  // replace what is in the archive and older than the file
    ZIP_DELETE = 2,
    ZIP_UPDATE = 3,  // add what is not in the archive, replace what is older
    ZIP_ADD = 4,     // add, or replace whatever the dates; with an empty item list: set the comment alone
    ZIP_MEMORY_TO_FILE = 5,
};

// UNZIPCMDSTRUCT::function.
enum UnzipFunction : std::int32_t {
    UNZIP_NONE = 0,
    UNZIP_COUNT_ALL = 1,
    UNZIP_NEXT = 2,  // `index` -1 starts; each call moves it to the member it answers
    UNZIP_COUNT_MATCHING = 3,
    UNZIP_NEXT_MATCHING = 4,
    UNZIP_COMMENT_SIZE = 5,  // bytes without the ending zero
    UNZIP_COMMENT = 6,       // into lpszReturnString, ending with a zero
    UNZIP_INDEXED = 7,
    UNZIP_EXTRACT = 8,
    UNZIP_FILE_TO_MEMORY = 9,
};

// UNZIPCMDSTRUCT::wUnzipSubOptions.
constexpr std::uint16_t UNZIP_OVERWRITE_READ_ONLY = 1;

// What "dzip" answers, and what of it the messages say (Dynazip::ZipErrorMsg).
enum ZipCode : int {
    ZIP_DONE = 0,
    ZIP_BUSY = 1,
    ZIP_CUT_OFF = 2,
    ZIP_INVALID = 3,
    ZIP_NO_MEMORY = 4,
    ZIP_LOGIC_ERROR = 5,
    ZIP_TOO_BIG_TO_SPLIT = 6,
    ZIP_BAD_COMMENT = 7,
    ZIP_INVALID_OR_NO_MEMORY = 8,
    ZIP_CANCELLED = 9,
    ZIP_TEMPORARY_FILE = 10,
    ZIP_READ_FAILED = 11,
    ZIP_NOTHING_TO_DO = 12,
    ZIP_MISSING = 13,
    ZIP_WRITE_FAILED = 14,
    ZIP_CANNOT_CREATE = 15,
    ZIP_BAD_REQUEST = 16,
    ZIP_NOT_COMPLETED = 17,
    ZIP_FILE_MISSING = 18,
    ZIP_MEDIA_ERROR = 19,
    ZIP_VOLUMES_ASKED = 20,
    ZIP_VOLUMES = 21,
};

// The same for "dunzip" (Dynazip::UnzipErrorMsg).
enum UnzipCode : int {
    UNZIP_DONE = 0,
    UNZIP_CUT_OFF = 2,
    UNZIP_INVALID = 3,
    UNZIP_NO_MEMORY = 4,
    UNZIP_NO_MEMORY_EITHER = 5,
    UNZIP_MISSING = 9,
    UNZIP_NOTHING_TO_DO = 11,
    UNZIP_SAME_VOLUME = 12,
    UNZIP_OUT_OF_BOUNDS = 25,
    UNZIP_CANNOT_CREATE = 28,
    UNZIP_CANNOT_OPEN = 29,
    UNZIP_BAD_CRC = 39,
    UNZIP_CANCELLED = 40,
    UNZIP_ENCRYPTED = 41,
    UNZIP_UNKNOWN_METHOD = 42,
    UNZIP_BAD_KEY = 44,
    UNZIP_BUSY = 45,
    UNZIP_VOLUME_LABEL = 46,
    UNZIP_BAD_REQUEST = 47,
    UNZIP_STOPPED = 48,
    UNZIP_SKIPPED = 49,
    UNZIP_DISK_FULL = 50,
    // Of "dunzipeach" alone: without folders, a member of another folder has the name and was brought out.
    UNZIP_NAME_TAKEN = 127,
};

// What operations of the library answer in place of either engine's code when that engine is not loaded: the
// system's number for a module that cannot be found.
constexpr int ZIP_ENGINE_NOT_LOADED = 126;

// ZIPINFO::attr beyond the file attributes of the low byte.
constexpr std::uint32_t ZIPINFO_ENCRYPTED = 32768;
constexpr std::uint32_t ZIPINFO_LONG_NAME = 65536;

#pragma pack(push, 2)

// Item lists hold file names separated by blanks; a name with blanks stands in double quotes; "*" and "?" are
// wild cards in the name part.
struct ZIPCMDSTRUCT {
    std::int32_t zipStructSize;  // the record's own size; with another one the call is refused
    std::int32_t function;       // a ZipFunction
    const char* lpszZIPFile;     // the archive; to add makes it, with ZIP_UPDATE, ZIP_ADD or from memory
    const char* lpszItemList;    // the files, or the members to delete, or the one name for a block of memory

    // Told how far the whole call is, and each item; null: nobody is told.
    ZipStatusProc lpMajorStatus;
    void* lpMajorUserData;
    ZipStatusProc lpMinorStatus;
    void* lpMinorUserData;

    std::int32_t dosifyFlag;   // not offered: other than 0 is refused (ZIP_BAD_REQUEST)
    std::int32_t recurseFlag;  // names are looked for in the folders below too; a named folder is taken whole
    std::int32_t compFactor;   // 0 (store) to 9

    // Without effect.
    std::int32_t quietFlag;
    std::int32_t pathForTempFlag;
    const char* lpszTempPath;

    // Not offered: other than 0 is refused (ZIP_BAD_REQUEST).
    std::int32_t fixFlag;
    std::int32_t fixHarderFlag;
    std::int32_t includeVolumeFlag;

    std::int32_t deleteOriginalFlag;    // the files go when the archive is whole; folders stay
    std::int32_t growExistingFlag;      // without effect
    std::int32_t noDirectoryNamesFlag;  // members are named without their folders
    std::int32_t convertLFtoCRLFFlag;   // not offered: other than 0 is refused

    // The archive's comment becomes lpszComment, which must not be null then.
    std::int32_t addCommentFlag;
    const char* lpszComment;

    // Only files that were changed on the day lpszDate ("MM/DD/YY", years from 80 on of the last century) or
    // later.
    std::int32_t afterDateFlag;
    const char* lpszDate;

    std::int32_t oldAsLatestFlag;  // the archive's file gets the time of its latest member

    // Only names that the one item list has, and none that the other has; both hold for folders below too.
    std::int32_t includeOnlyFollowingFlag;
    const char* lpszIncludeFollowing;
    std::int32_t excludeFollowingFlag;
    const char* lpszExcludeFollowing;

    std::int32_t noDirectoryEntriesFlag;  // folders that are taken whole are no members of their own
    std::int32_t includeSysHiddenFlag;    // wild cards find hidden files and the system's too

    // Names that end so are stored: suffixes with or without their dot, between any of " ,;:".
    std::int32_t dontCompressTheseSuffixesFlag;
    const char* lpszStoreSuffixes;

    std::int32_t bDiagnostic;        // without effect
    std::int32_t encryptFlag;        // not offered: other than 0 is refused
    const char* lpszEncryptCode;     // without effect
    void* lpMessageDisplay;          // without effect
    void* lpMessageDisplayData;      // without effect
    std::uint16_t wMultiVolControl;  // not offered: other than 0 is refused (ZIP_VOLUMES_ASKED)
    std::uint16_t wZipSubOptions;    // not offered: other than 0 is refused

    // Without effect.
    std::int32_t lResv1;
    std::int32_t lResv2;
    void* lpRenameProc;
    void* lpRenameUserData;
    const char* lpszExtProgTitle;

    // The contents for ZIP_MEMORY_TO_FILE, and how many bytes they are.
    void* lpMemBlock;
    std::int32_t lMemBlockSize;
};

// What is told of a member.
struct ZIPINFO {
    std::uint16_t index;      // in the directory's order, from 0; members beyond 65,535 have no record
    std::uint32_t oSize;      // bytes, unpacked; a member of 4 GiB or more has no record
    std::uint32_t cSize;      // bytes, packed
    std::uint16_t cMethod;    // of the format: 0 stored, 8 deflated
    std::uint16_t cOption;    // how hard the packer tried, 0 to 3
    std::uint16_t cPathType;  // 0
    std::uint32_t crc_32;     // of the unpacked contents
    char szDateTime[18];      // "MM/DD/YY HH:MM:SS", local
    char szFileName[260];     // with its folders; a folder's ends with a slash; a longer one has no record
    std::uint32_t attr;       // file attributes, ZIPINFO_ENCRYPTED, ZIPINFO_LONG_NAME
    std::uint32_t reserved1;  // 0
    std::uint32_t reserved2;  // 0
};

// A call of the engine that reads.
struct UNZIPCMDSTRUCT {
    std::int32_t unzipStructSize;  // the record's own size; with another one the call is refused
    std::int32_t function;         // an UnzipFunction
    const char* lpszZIPFile;       // the archive
    ZIPINFO* zInfo;                // answered where a function describes a member; must not be null then
    const char* lpszFilespec;      // an item list of names in the archive
    std::int32_t index;            // of a member, in the directory's order from 0
    const char* lpszDestination;   // the folder to extract to, made if need be; empty: the current one

    // What happens to a file that is there: with no flag it stays (UNZIP_SKIPPED). Freshen replaces older
    // ones and adds none, update replaces older ones and adds the others, overwrite replaces all; update with
    // overwrite leaves only those newer than the member.
    std::int32_t freshenFlag;
    std::int32_t updateFlag;
    std::int32_t overWriteFlag;

    std::int32_t quietFlag;             // without effect
    std::int32_t testFlag;              // extraction writes nothing, but reads contents and check sums
    std::int32_t noDirectoryNamesFlag;  // all goes into the destination itself; folders are left out
    std::int32_t recurseFlag;           // names are looked for in the folders below too
    std::int32_t noDirectoryItemsFlag;  // folders do not count as members that match

    // Told how far each item is, and the whole call; null: nobody is told.
    ZipStatusProc lpMinorStatus;
    void* lpMinorUserData;
    ZipStatusProc lpMajorStatus;
    void* lpMajorUserData;

    std::int32_t returnCount;  // answered: members, or bytes of a comment or block
    // Where UNZIP_COMMENT writes. The engine is not told its size: with 65,536 bytes any comment fits.
    char* lpszReturnString;

    std::int32_t bDiagnostic;   // without effect
    std::int32_t bLF2CRLFFlag;  // not offered: other than 0 is refused where contents are read

    // Without effect; encrypted members answer UNZIP_ENCRYPTED.
    std::int32_t decryptFlag;
    const char* lpszDecryptCode;
    void* lpMessageDisplay;
    void* lpMessageDisplayData;

    std::uint16_t wUnzipSubOptions;  // UNZIP_OVERWRITE_READ_ONLY or 0

    // Without effect.
    std::int32_t lResv1;
    std::int32_t lResv2;
    void* lpRenameProc;
    void* lpRenameUserData;
    const char* lpszExtProgTitle;

    // UNZIP_FILE_TO_MEMORY: the block, its size, and the first byte of the contents to go there.
    void* lpMemBlock;
    std::int32_t lMemBlockSize;
    std::int32_t lStartingOffset;
};

#pragma pack(pop)

// The entry points, "dzip" and "dunzip".
using DzipProc = int(QL_ZIP_CALL*)(ZIPCMDSTRUCT*);
using DunzipProc = int(QL_ZIP_CALL*)(UNZIPCMDSTRUCT*);

// --- Beyond the published interface. The engines that come with the library have an entry point more each.

// A member, told in full. The texts are the engine's, as long as the call-back that gets them runs.
struct ZIPMEMBER {
    std::int32_t index;        // in the directory's order, from 0
    std::int32_t code;         // of what was done with the member: 0, or why not
    const wchar_t* name;       // true and whole
    const char* ansiName;      // as ZIPINFO has it, but whole
    const char* dateTime;      // "MM/DD/YY HH:MM:SS", local
    std::uint64_t size;        // unpacked
    std::uint64_t packedSize;  // as it lies in the archive
    std::uint32_t crc;         // of the unpacked contents
    std::uint32_t attributes;  // as ZIPINFO::attr
    std::uint16_t method;      // of the format
    std::uint16_t flags;       // of the format
    std::int32_t isFolder;     // 1 or 0
    std::int32_t isEncrypted;  // 1 or 0
};

// Another answer than 0 cancels the call.
using ZipMemberProc = int(QL_ZIP_CALL*)(const ZIPMEMBER* member, void* userData);

// "dunzipeach": runs a command and tells of each member that it concerns, in the order of the directory
// (extraction: of the work). Functions: UNZIP_COUNT_ALL and UNZIP_COUNT_MATCHING (the members are told only)
// and UNZIP_EXTRACT. With an `index` of 0 or more that member alone is meant, whatever `lpszFilespec` says.
using DunzipEachProc = int(QL_ZIP_CALL*)(UNZIPCMDSTRUCT* command, ZipMemberProc each, void* userData);

// A file that is to be added, and what became of it.
struct ZIPSOURCE {
    const wchar_t* file;  // where it is
    const wchar_t* name;  // in the archive, with its folders; null: the last part of the file's own
    std::int32_t code;    // answered: a ZipCode; ZIP_BAD_REQUEST where a source before has the same name
};

// "dzipfiles": adds or freshens as the command's function says; the command's item list and filters have no
// effect. A file that cannot be added does not keep the others out. Answers the code of the whole: where it
// is neither 0 nor ZIP_NOTHING_TO_DO the archive is as it was, and every source has that code that has none
// of its own.
using DzipFilesProc = int(QL_ZIP_CALL*)(const ZIPCMDSTRUCT* command, ZIPSOURCE* sources, std::int32_t count);

static_assert(sizeof(ZIPINFO) == 310 && offsetof(ZIPINFO, crc_32) == 16 &&
              offsetof(ZIPINFO, szDateTime) == 20 && offsetof(ZIPINFO, szFileName) == 38 &&
              offsetof(ZIPINFO, attr) == 298);

// Where a field of a command record stands: behind so many bytes of numbers, and so many pointers. With
// pointers of 32 bits that is the published form, of 188 and 142 bytes; with wider ones the same fields,
// packed alike.
constexpr std::size_t ZipRecordOffset(std::size_t numbers, std::size_t pointers) {
    return numbers + pointers * sizeof(void*);
}
static_assert(sizeof(ZIPCMDSTRUCT) == ZipRecordOffset(112, 19) &&
              offsetof(ZIPCMDSTRUCT, lpszItemList) == ZipRecordOffset(8, 1) &&
              offsetof(ZIPCMDSTRUCT, compFactor) == ZipRecordOffset(16, 6) &&
              offsetof(ZIPCMDSTRUCT, quietFlag) == ZipRecordOffset(20, 6) &&
              offsetof(ZIPCMDSTRUCT, lpszTempPath) == ZipRecordOffset(28, 6) &&
              offsetof(ZIPCMDSTRUCT, growExistingFlag) == ZipRecordOffset(44, 7) &&
              offsetof(ZIPCMDSTRUCT, noDirectoryNamesFlag) == ZipRecordOffset(48, 7) &&
              offsetof(ZIPCMDSTRUCT, lpszComment) == ZipRecordOffset(60, 7) &&
              offsetof(ZIPCMDSTRUCT, excludeFollowingFlag) == ZipRecordOffset(72, 10) &&
              offsetof(ZIPCMDSTRUCT, lpszEncryptCode) == ZipRecordOffset(96, 12) &&
              offsetof(ZIPCMDSTRUCT, wMultiVolControl) == ZipRecordOffset(96, 15) &&
              offsetof(ZIPCMDSTRUCT, lResv1) == ZipRecordOffset(100, 15) &&
              offsetof(ZIPCMDSTRUCT, lMemBlockSize) == ZipRecordOffset(108, 19));
static_assert(sizeof(UNZIPCMDSTRUCT) == ZipRecordOffset(78, 16) &&
              offsetof(UNZIPCMDSTRUCT, index) == ZipRecordOffset(8, 3) &&
              offsetof(UNZIPCMDSTRUCT, noDirectoryNamesFlag) == ZipRecordOffset(32, 4) &&
              offsetof(UNZIPCMDSTRUCT, noDirectoryItemsFlag) == ZipRecordOffset(40, 4) &&
              offsetof(UNZIPCMDSTRUCT, returnCount) == ZipRecordOffset(44, 8) &&
              offsetof(UNZIPCMDSTRUCT, decryptFlag) == ZipRecordOffset(56, 9) &&
              offsetof(UNZIPCMDSTRUCT, wUnzipSubOptions) == ZipRecordOffset(60, 12) &&
              offsetof(UNZIPCMDSTRUCT, lResv1) == ZipRecordOffset(62, 12) &&
              offsetof(UNZIPCMDSTRUCT, lpszExtProgTitle) == ZipRecordOffset(70, 14) &&
              offsetof(UNZIPCMDSTRUCT, lStartingOffset) == ZipRecordOffset(74, 16));
