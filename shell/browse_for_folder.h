#pragma once

#include "platform/export.h"
#include "prefs/directories.h"
#include "rw/wide_string.h"

struct HWND__;  // NOLINT(bugprone-reserved-identifier): the system's name
using HWND = HWND__*;

// The system's dialog in which the user picks a folder, from the tree or by typing its name. Only a folder of
// the file system that exists and that Validate accepts can be picked: for any other the user is told why,
// and the dialog stays. For one thread, which the dialog's message loop runs on; the owner must be of the
// same thread. Nothing throws: without memory a title or a start is not set, and no folder picked.
//
//     CBrowseForFolder browser(frame);
//     browser.SetTitle(L"Folder for answers");
//     browser.SetStartFolder(CQlDir::GetDirectory(AnswerDirectory));
//     if (browser.Show() == CBrowseForFolder::Chosen) Use(browser.GetFolder());
class QL_API CBrowseForFolder {
  public:
    // What came of Show.
    enum Result : int { Chosen = 0, Cancelled = 1, Failed = 2 };

    // The owner is disabled while the dialog is open; null for none.
    explicit CBrowseForFolder(HWND owner = nullptr) noexcept;
    virtual ~CBrowseForFolder();
    CBrowseForFolder(const CBrowseForFolder&) = delete;
    CBrowseForFolder& operator=(const CBrowseForFolder&) = delete;

    void SetTitle(const RWWString& title);  // of the window; empty, as at first, for the system's own

    // The folder that the tree opens at, or the nearest one above it that exists; a relative one is below the
    // current directory. The tree's root when it is empty, and when there is none above it, as on a server
    // out of reach.
    void SetStartFolder(const RWWString& folder);

    // Opens the dialog and returns when it is closed. Failed when it could not be opened, when memory ended,
    // and when Validate threw, which closes it.
    Result Show();

    // The full path that the last Show with the answer Chosen brought, without a backslash at its end but a
    // root's ("C:\"); empty before. A typed name without a root is below the folder selected in the tree, and
    // nowhere while none is.
    const RWWString& GetFolder() const noexcept { return folder_; }

  protected:
    // Whether the user may pick this existing folder; if not, why, for the user to read: nothing is shown
    // when it stays empty. Accepts all.
    virtual bool Validate(const RWWString& folder, RWWString& why);

  private:
    HWND owner_;
    RWWString title_;
    RWWString start_;
    RWWString folder_;
};

// Lets the user pick a folder, starting at the one given, which is replaced by the one picked. False, and it
// stays, when none was picked. A null title is the system's.
QL_API bool GetDirName(HWND owner, const wchar_t* title, RWWString& folder);

// The same for a kind of files: starts at CQlDir's recent directory of the kind (GetRecentDirectory), and
// remembers the one picked as the recent one. The folder stays when none was picked.
QL_API bool GetFolderPath(HWND owner, const wchar_t* title, QuilletDirectories kind, RWWString& folder);
