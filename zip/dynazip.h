#pragma once

#include <cstdint>

#include "platform/export.h"
#include "rw/wide_string.h"
#include "zip/zip_records.h"

struct HINSTANCE__;  // NOLINT(bugprone-reserved-identifier): the system's own name

// Zip archives, through the two engines "DZIP32.DLL" (writes) and "DUNZIP32.DLL" (reads), which are loaded at
// run time from the program directory, else from the folder of this library's module. Any engine with the
// interface of zip/zip_records.h will do; this library comes with a pair.
//
// The engines take ANSI names. A name (or comment) is acceptable when it is null, empty, or converts to the
// ANSI code page without loss and without a substitute; any other makes the operation answer 16 and touch
// nothing. GetComment, which answers no code, answers the empty text then.
//
// Results follow no one convention, which callers rely on:
//   AddFileToZip                                      1 done, 0 the engine failed, 16 not acceptable
//   FileExistsInZip, SetComment                       1 yes/done, 0 no/failed, 16 not acceptable
//   DeleteFileFromZip, ExtractFileFromZip,            the engine's code (0 done; ZipErrorMsg, UnzipErrorMsg),
//   GetFileDateAndSizeFromZip, GetIndexedZipInfo      16 not acceptable
//
// Make sure that the engine is loaded before an operation; without it the ones that answer a code answer 17
// (delete) or 49 (the rest), the others 0 or the empty text. Loading and freeing belong to one thread;
// operations may run on any thread if the engine allows it, as the pair that comes with the library does.
class QL_API Dynazip {
  public:
    // 1 when the engine is loaded (now) and has its entry point, else 0; a module without it is unloaded
    // again. It stays loaded until it is freed.
    static int IsZipDllLoaded();
    static int IsUnZipDllLoaded();
    static void FreeZipDll();
    static void FreeUnZipDll();

    // A record of zeros but for its size, and:
    // function 6 and compression factor 5 (the function is the caller's to replace: 6 is none of them)
    static void InitZIPCmdStruct(ZIPCMDSTRUCT* command);
    // index -1; no folders in names, members of every folder, no folders as members
    static void InitUNZIPCmdStruct(UNZIPCMDSTRUCT* command);

    // Adds the file directory\fileName under its name alone, or replaces a member that is older. `option` is
    // the compression factor, 0 to 9. Kept on purpose: a member that is not older counts as a failure, where
    // the engine answers that there was nothing to do.
    static long AddFileToZip(const wchar_t* zipFile, const wchar_t* directory, const wchar_t* fileName,
                             int option);

    static long DeleteFileFromZip(const wchar_t* zipFile, const wchar_t* fileName);

    // To destination\fileName, without the folders of the member's name; a file that is there is replaced.
    static long ExtractFileFromZip(const wchar_t* zipFile, const wchar_t* fileName,
                                   const wchar_t* destination);

    static int FileExistsInZip(const wchar_t* zipFile, const wchar_t* fileName);

    // The archive's comment; empty when there is none or it cannot be read.
    static RWWString GetComment(const wchar_t* zipFile);
    static int SetComment(const wchar_t* zipFile, const wchar_t* comment);

    // `time`: seconds since 1970 UTC, from the member's local time; -1 when that is no date. `size`: bytes,
    // at most 2,147,483,647. Neither changes when the code is not 0.
    static long GetFileDateAndSizeFromZip(const wchar_t* zipFile, const wchar_t* fileName, std::int64_t& time,
                                          int& size);

    // `index` counts from 0 in the directory's order. 16 when `info` is null.
    static int GetIndexedZipInfo(const wchar_t* zipFile, int index, ZIPINFO* info);

    // The English message for a code of the one or the other engine; never null, empty where there is none.
    static const wchar_t* ZipErrorMsg(int code);
    static const wchar_t* UnzipErrorMsg(int code);

  private:
    static HINSTANCE__ *dzipDll, *dunzipDll;
    static DzipProc dzipProc;
    static DunzipProc dunzipProc;
};
