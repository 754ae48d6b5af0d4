#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// The kinds of files that have a place of their own. For each: the preference that names the place (read with
// GetQLProfileDir, so that one trailing backslash goes) and the place when the preference is empty.
enum QuilletDirectories : int {
    ProgramDirectory = 0,             // the folder of the library's own module, with its trailing backslash;
                                      // "C:\Program Files\Quillet Author\" when that is not known
    JavaScriptDirectory = 1,          // Locations, JavaScript Files; else ProgramDirectory + \ServerFiles
    ProgramDirectoryCopy = 2,         // the same as 0
    PersonalDictionaryFile = 3,       // Spelling, Personal Dictionary; else
                                      // 11 + \Quillet Author\Spelling\Personal Dictionary.tlx (a file)
    LibraryDirectory = 4,             // Locations, Library Files; else 11 + \Quillet Author
    TemplateSetDirectory = 5,         // Locations, Template Sets; else 12 + \Quillet Author\Templates
    FormDocumentDirectory = 6,        // Locations, Form Document Files; else 11
    AnswerDirectory = 7,              // Locations, Answer Files; else 11 + \Quillet Author\Answers
    AnswerDirectoryAlias = 8,         // the same as 7
    TemplateDirectory = 9,            // Locations, Template Files; else 11 + \Quillet Author\Templates
    PublishDirectory = 10,            // Locations, Publish Settings Files; else 11 + \Quillet Author\Publish
    PersonalDocumentsDirectory = 11,  // the user's documents folder, made when missing; empty when unknown
    PublicDocumentsDirectory = 12,    // the documents folder of all users, likewise
    CatalogDirectory = 13,            // Locations, Catalog Files; else 12 + \Quillet Author\Catalog Files
    ProgramFilesPreference = 14,      // Locations, Program Files; else empty
};

// Where each kind of file lives. Folders are answered as texts; whether they exist is not looked at. A kind
// beyond the enumeration has no folder: the empty text, and nothing is remembered for it.
//
// Kinds 0, 2 and 14 are found out once and stay for the life of the process, 14 even when it is empty. A
// folder that the shell does not know is empty, and the defaults built on it begin with a backslash.
//
// Safe on any thread, but for the recent and library directories, which are the user-interface thread's.
class QL_API CQlDir {
  public:
    static RWWString GetDirectory(QuilletDirectories kind);

    // The enumeration's name of a kind ("TemplateDirectory"); null beyond it.
    static const wchar_t* GetName(QuilletDirectories kind) noexcept;

    // The directory last used while the program runs; GetDirectory's until one was set. For LibraryDirectory
    // the library directory below, which outlives the program.
    static RWWString GetRecentDirectory(QuilletDirectories kind);
    static void SetRecentDirectory(QuilletDirectories kind, const RWWString& directory);

    // The preference "Library Folder" of the section "Recent"; when it is empty,
    // GetDirectory(LibraryDirectory).
    static RWWString GetLibraryDirectory();
    static void SetLibraryDirectory(const RWWString& directory);

    // Between a path below a documents folder and its short form for display, which begins with "Documents\"
    // or "Public Documents\" ("My Documents\", "Shared Documents\" before Windows 6). Case does not matter.
    // Other paths stay as they are. Kept on purpose: only the leading text is compared, so "DocumentsOld\x"
    // counts as a display path, and a sibling of the documents folder whose name is longer as a path below
    // it.
    //   "documents\letters" -> the personal documents folder + "\letters", and back "Documents\letters"
    static RWWString ConvertSpecialDisplayPathToPath(const RWWString& path);
    static RWWString ConvertPathToSpecialDisplayPath(const RWWString& path);
};
