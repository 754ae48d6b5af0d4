#pragma once

#include <cstdint>

#include "platform/export.h"
#include "rw/wide_string.h"
#include "zip/zip_records.h"

struct HINSTANCE__;  // NOLINT(bugprone-reserved-identifier): the system's own name

// Told how far a call is, with the item's name in ANSI; another answer than 0 cancels the call.
struct ZipProgress {
    ZipStatusProc proc = nullptr;  // null: nobody is told
    void* userData = nullptr;      // handed to it, and not looked at
};

// What ExtractMembers brings out, and how.
struct ZipExtraction {
    const wchar_t* const* names = nullptr;  // wild cards work; a member's whole path means that member alone
    int count = 0;                          // of names; 0 for all members, or fewer for none
    int index = -1;                         // 0 or more: that member alone, whatever the names say
    bool withFolders = false;               // the members' folders are made below the destination
    bool keepsNewer = false;                // a file that is newer than its member stays
    bool testsOnly = false;                 // nothing is written: contents and check sums are looked at
    ZipProgress progress{};                 // told how far the whole call is
};

// Zip archives, through the two engines "DZIP32.DLL" (writes) and "DUNZIP32.DLL" (reads), which are loaded at
// run time by full path from the program directory, which is the folder of this library's module. What they
// need in turn comes from their own folder first, never by way of the current folder or PATH. Any engine with
// the interface of zip/zip_records.h will do; this library comes with a pair.
//
// The engines take ANSI names. A name is acceptable when it is null, empty, or converts to the ANSI code page
// without loss and without a substitute, and has no double quote; a comment may have one. Anything else makes
// the operation answer 16 and touch nothing. GetComment, which answers no code, answers the empty text then.
//
// Results follow no one convention, which callers rely on:
//   AddFileToZip, AddFilesToZip                       1 done, 0 the engine failed, 16 not acceptable
//   FileExistsInZip, SetComment                       1 yes/done, 0 no/failed, 16 not acceptable
//   DeleteFileFromZip, ExtractFileFromZip,            the engine's code (0 done; ZipErrorMsg, UnzipErrorMsg),
//   GetFileDateAndSizeFromZip, GetIndexedZipInfo,     16 not acceptable
//   ExtractMembers, ForEachMember
// LastEngineCode tells the code behind the first two groups: "not newer" (12) from "not there" (18), for
// example; of AddFilesToZip that of the whole, where each file has its own. Records must not be null.
//
// Make sure that the engine is loaded before an operation; without it the code is ZIP_ENGINE_NOT_LOADED, and
// the operations that answer no code answer 0 or the empty text. Loading and freeing belong to one thread;
// operations may run on any thread if the engine allows it, as the pair that comes with the library does. An
// archive that another program holds is waited for, two seconds at most. Nothing throws: where this library
// finds no memory, the code is ZIP_NO_MEMORY, which is that of the engines.
class QL_API Dynazip {
  public:
    // 1 when the engine is loaded (now) and has its entry point, else 0; a module without it is unloaded
    // again. It stays loaded until it is freed.
    static int IsZipDllLoaded();
    static int IsUnZipDllLoaded();  // the same of the engine that reads

    // Unload the engine, if it is loaded. No operation may be running on any thread.
    static void FreeZipDll();
    static void FreeUnZipDll();

    // A record of zeros but for its size, and:
    // function 6 and compression factor 5 (the function is the caller's to replace: 6 is none of them)
    static void InitZIPCmdStruct(ZIPCMDSTRUCT* command);
    // index -1; no folders in names, members of every folder, no folders as members
    static void InitUNZIPCmdStruct(UNZIPCMDSTRUCT* command);

    // Adds the file directory\fileName, or all that its wild cards name, each under its name alone, or
    // replaces a member that is older. `option` is the compression factor, 0 to 9. Kept on purpose: a member
    // that is not older counts as a failure, where the engine answers that there was nothing to do.
    static long AddFileToZip(const wchar_t* zipFile, const wchar_t* directory, const wchar_t* fileName,
                             int option);

    // The same for many files at once, with one rewrite of the archive: each source's `code` says what became
    // of it (0 added; ZIP_NOTHING_TO_DO, not newer; ZIP_BAD_REQUEST, not acceptable, or a source before has
    // the same name). A source that fails does not keep the others out; where the archive cannot be written,
    // its name is not acceptable or memory runs out, all have that code. A source may be a folder, which
    // becomes a member without contents. 1 when all were added, else 0. Names other than the file's own need
    // the engine that comes with the library.
    static long AddFilesToZip(const wchar_t* zipFile, ZIPSOURCE* files, int count, int option,
                              const ZipProgress& progress = {});

    // The member of that whole path. Wild cards work in its last part, for members of the very folder that
    // the path names: "*.txt" means those of no folder, "sub\*.txt" those of sub alone.
    static long DeleteFileFromZip(const wchar_t* zipFile, const wchar_t* fileName);

    // To destination\fileName, without the folders of the member's name; a file that is there is replaced, at
    // once when the new one is whole. A member's whole path means that member alone; any other name is looked
    // for in all folders, and wild cards work. Of members with the same last part the last one stays.
    static long ExtractFileFromZip(const wchar_t* zipFile, const wchar_t* fileName,
                                   const wchar_t* destination);

    // Members as `what` says, each told to `each` with its code when it is done (49: left out, because the
    // file that is there is newer; UNZIP_NAME_TAKEN: without folders, a member of another folder had the same
    // last part and was brought out before). The code is that of the first member that failed. Small files
    // come to the disk on all cores and are told in their order: a call that ends early (cancelled, or a full
    // disk) can leave a few members whole on the disk that were not told. 16 without `each`, or without names
    // where they are counted. Needs the engine that comes with the library; any other answers 47.
    static long ExtractMembers(const wchar_t* zipFile, const wchar_t* destination, const ZipExtraction& what,
                               ZipMemberProc each, void* userData);

    // All members in the order of the directory, whatever their number and sizes, with the archive opened
    // once. From an engine that does not come with the library: as far as its records tell them, and one that
    // they cannot has the code 49 and no name. 16 without `each`.
    static long ForEachMember(const wchar_t* zipFile, ZipMemberProc each, void* userData);

    // Whether there is a member of that name, which is looked for as ExtractFileFromZip does; a folder is
    // none.
    static int FileExistsInZip(const wchar_t* zipFile, const wchar_t* fileName);

    // The archive's comment, up to its first zero; empty when there is none or it cannot be read. Bytes
    // beyond ASCII that are valid UTF-8 are read as UTF-8, others as ANSI; SetComment writes so that the same
    // text is read again.
    static RWWString GetComment(const wchar_t* zipFile);
    static int SetComment(const wchar_t* zipFile, const wchar_t* comment);

    // Of the first member of that name, which is looked for as ExtractFileFromZip does. `time`: seconds since
    // 1970 UTC, from the member's local time; -1 when that is no date. `size`: bytes, at most 2,147,483,647.
    // Neither changes when the code is not 0.
    static long GetFileDateAndSizeFromZip(const wchar_t* zipFile, const wchar_t* fileName, std::int64_t& time,
                                          int& size);

    // `index` counts from 0 in the directory's order. 16 when `info` is null.
    static int GetIndexedZipInfo(const wchar_t* zipFile, int index, ZIPINFO* info);

    // The engine's code of the calling thread's last operation above (16 not acceptable,
    // ZIP_ENGINE_NOT_LOADED).
    static int LastEngineCode();

    // The English message for a code of the one or the other engine; never null, empty where there is none.
    static const wchar_t* ZipErrorMsg(int code);
    static const wchar_t* UnzipErrorMsg(int code);

  private:
    static HINSTANCE__ *dzipDll, *dunzipDll;
    static DzipProc dzipProc;
    static DunzipProc dunzipProc;
};
