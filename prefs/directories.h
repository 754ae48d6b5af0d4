#pragma once

#include "platform/export.h"
#include "rw/wide_string.h"

// The kinds of files that have a place of their own. For each: the preference that names the place (read with
// GetQLProfileDir, so that one trailing backslash goes), or the place when the preference is empty.
enum QuilletDirectories : int {
    // The folder of the library's own module, with its trailing backslash; "C:\Program Files\Quillet Author\"
    // when that is not known.
    ProgramDirectory = 0,
    JavaScriptDirectory = 1,   // Locations, JavaScript Files; or \ServerFiles below ProgramDirectory
    ProgramDirectoryCopy = 2,  // the same as ProgramDirectory
    // A file: Spelling, Personal Dictionary; or \Quillet Author\Spelling\Personal Dictionary.tlx below
    // PersonalDocumentsDirectory.
    PersonalDictionaryFile = 3,
    LibraryDirectory = 4,  // Locations, Library Files; or \Quillet Author below PersonalDocumentsDirectory
    TemplateSetDirectory =
        5,  // Locations, Template Sets; or \Quillet Author\Templates below PublicDocumentsDirectory
    FormDocumentDirectory = 6,  // Locations, Form Document Files; or PersonalDocumentsDirectory
    AnswerDirectory =
        7,  // Locations, Answer Files; or \Quillet Author\Answers below PersonalDocumentsDirectory
    AnswerDirectoryAlias = 8,  // that and its preference once more, with a recent directory of its own
    TemplateDirectory =
        9,  // Locations, Template Files; or \Quillet Author\Templates below PersonalDocumentsDirectory
    // Locations, Publish Settings Files; or \Quillet Author\Publish below PersonalDocumentsDirectory.
    PublishDirectory = 10,
    PersonalDocumentsDirectory = 11,  // the user's documents folder, made when missing; empty when unknown
    PublicDocumentsDirectory = 12,    // the documents folder of all users, likewise
    // Locations, Catalog Files; or \Quillet Author\Catalog Files below PublicDocumentsDirectory.
    CatalogDirectory = 13,
    ProgramFilesPreference = 14,  // Locations, Program Files; or empty
};

// Where each kind of file lives. Folders are answered as texts; but for the documents folders themselves,
// whether they exist is not looked at. A kind beyond the enumeration has no folder: the empty text, and
// nothing is remembered for it.
//
// ProgramDirectory and ProgramFilesPreference are found out once and stay for the life of the process, even
// empty. A folder that the shell does not know is empty, and the defaults built on it begin with a backslash.
//
// Nothing throws: a text for which there is no memory is empty. Safe on any thread, but for the recent and
// library directories, which are the user-interface thread's.
class QL_API CQlDir {
  public:
    // As above. Of the folders only those of the documents, 11 and 12, are made on the disk when they are
    // missing; so they are where another kind's default builds on them.
    static RWWString GetDirectory(QuilletDirectories kind);

    // The enumeration's name of a kind ("TemplateDirectory"); null beyond it.
    static const wchar_t* GetName(QuilletDirectories kind) noexcept;

    // The preference that names a kind's place; false, and the out-parameters as they were, when none does.
    static bool GetPreference(QuilletDirectories kind, const wchar_t*& section,
                              const wchar_t*& entry) noexcept;

    // The directory last used while the program runs; until one was set, what GetDirectory said when this was
    // first asked. The empty text sets none. For LibraryDirectory the library directory below, which outlives
    // the program.
    static RWWString GetRecentDirectory(QuilletDirectories kind);
    static void SetRecentDirectory(QuilletDirectories kind, const RWWString& directory);

    // The preference "Library Folder" of the section "Recent"; when it is empty,
    // GetDirectory(LibraryDirectory).
    static RWWString GetLibraryDirectory();
    static void SetLibraryDirectory(const RWWString& directory);

    // Between a path below a documents folder and its short form for display, which begins with "Documents\"
    // or "Public Documents\" ("My Documents\", "Shared Documents\" before Windows 6). Case does not matter.
    // Other paths stay as they are; the documents folder itself is "Documents\", and comes back with a
    // backslash at its end. Kept on purpose: only the leading text is compared, so "DocumentsOld\x"
    // counts as a display path, and a sibling of the documents folder whose name is longer as a path below
    // it.
    //   "documents\letters" -> the personal documents folder + "\letters", and back "Documents\letters"
    static RWWString ConvertSpecialDisplayPathToPath(const RWWString& path);
    static RWWString ConvertPathToSpecialDisplayPath(const RWWString& path);
};
