#include "shell/browse_for_folder.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/folder.h"
#include "platform/full_path_name.h"
#include "platform/message_box.h"
#include "platform/win32.h"
#include "text/blanks.h"
#include "text/characters.h"

namespace {

using Validator = std::function<bool(const RWWString& folder, RWWString& why)>;

constexpr const wchar_t* kSelfProperty = L"Quillet folder dialog";
constexpr std::wstring_view kSeparators = L"\\/";

// The dialog's new style needs OLE, which a thread of another apartment cannot have.
class OleSession {
  public:
    OleSession() noexcept : started_(SUCCEEDED(::OleInitialize(nullptr))) {}
    ~OleSession() {
        if (started_) ::OleUninitialize();
    }
    OleSession(const OleSession&) = delete;
    OleSession& operator=(const OleSession&) = delete;

    bool started() const noexcept { return started_; }

  private:
    bool started_;
};

struct ItemDeleter {
    void operator()(ITEMIDLIST* item) const noexcept { ::CoTaskMemFree(item); }
};
using UniqueItem = std::unique_ptr<ITEMIDLIST, ItemDeleter>;

bool IsSeparator(wchar_t unit) {
    return kSeparators.find(unit) != std::wstring_view::npos;
}

// "C:", "C:\…" or "\\server\…": nothing that depends on a current directory.
bool HasRoot(std::wstring_view path) {
    if (path.size() < 2) return false;
    if (path[1] == L':') return path.size() == 2 || IsSeparator(path[2]);
    return IsSeparator(path[0]) && IsSeparator(path[1]);
}

// The form in which every folder is kept: with single backslashes, without "." and "..", without a backslash
// at its end but a drive's ("C:\").
std::wstring OneForm(std::wstring path) {
    constexpr std::size_t kDriveLength = 3;
    if (path.size() == 2 && HasRoot(path)) path += L'\\';
    std::wstring full = ql::FullPathName(path);
    if (full.size() > kDriveLength && IsSeparator(full.back())) full.pop_back();
    return full;
}

// The folder itself or the nearest one above it that exists; empty when there is none, as below a server that
// cannot be reached.
std::wstring NearestFolder(const std::wstring& start) {
    std::wstring path = OneForm(start);
    while (!path.empty() && !ql::IsFolder(path.c_str())) {
        const std::wstring above = path.substr(0, path.find_last_of(kSeparators));
        const std::wstring next = HasRoot(above) ? OneForm(above) : std::wstring();
        path = next.size() < path.size() ? next : std::wstring();  // a drive's root has none above
    }
    return path;
}

std::wstring FolderOf(const ITEMIDLIST* item) {
    wchar_t path[MAX_PATH];
    return item && ::SHGetPathFromIDListW(item, path) ? OneForm(path) : std::wstring();
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

// One run of the dialog. The system tells about it through a callback but closes it without asking, so its
// messages pass through here first. What throws under way, such as a host's Validate, ends the run: no
// exception may cross the system's own functions.
class FolderDialog {
  public:
    FolderDialog(const RWWString& title, const RWWString& start, Validator validate)
        : title_(title), start_(NearestFolder(start.str())), validate_(std::move(validate)) {}

    CBrowseForFolder::Result Run(HWND owner) {
        const OleSession ole;
        BROWSEINFOW info = {};
        info.hwndOwner = owner;
        info.ulFlags = BIF_RETURNONLYFSDIRS | BIF_EDITBOX | (ole.started() ? BIF_NEWDIALOGSTYLE : 0u);
        info.lpfn = &OnEvent;
        info.lParam = reinterpret_cast<LPARAM>(this);
        const UniqueItem item(::SHBrowseForFolderW(&info));
        if (!systemProcedure_ || hasFailed_) return CBrowseForFolder::Failed;
        return item && !taken_.empty() ? CBrowseForFolder::Chosen : CBrowseForFolder::Cancelled;
    }

    const std::wstring& folder() const noexcept { return taken_; }

  private:
    // NOLINTBEGIN(performance-no-int-to-ptr): the system's way of handing things
    static int CALLBACK OnEvent(HWND window, UINT event, LPARAM item, LPARAM data) noexcept {
        auto* const self = reinterpret_cast<FolderDialog*>(data);
        self->window_ = window;
        const bool isDone = ql::Completes([=] {
            if (event == BFFM_INITIALIZED) self->Open();
            if (event == BFFM_SELCHANGED)
                self->selected_ = FolderOf(reinterpret_cast<const ITEMIDLIST*>(item));
        });
        if (!isDone) self->Fail();
        return 0;
    }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
        auto* const self = static_cast<FolderDialog*>(::GetPropW(window, kSelfProperty));
        const WNDPROC systemProcedure = self->systemProcedure_;
        if (message == WM_COMMAND && LOWORD(w) == IDOK) {
            if (!ql::Completes([self] { self->Take(); })) self->Fail();
            if (self->taken_.empty()) return 0;
        }
        if (message == WM_NCDESTROY) ::RemovePropW(window, kSelfProperty);
        return ::CallWindowProcW(systemProcedure, window, message, w, l);
    }

    void Open() {
        if (!title_.isNull()) ::SetWindowTextW(window_, title_.data());
        if (!start_.empty()) SelectStart();
        if (!::SetPropW(window_, kSelfProperty, this)) return;
        systemProcedure_ = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage)));
    }
    // NOLINTEND(performance-no-int-to-ptr)

    void Fail() noexcept {
        hasFailed_ = true;
        ::PostMessageW(window_, WM_COMMAND, IDCANCEL, 0);
    }

    // The tree may know folders by their times, too, which its own first look at them changes.
    void SelectStart() {
        constexpr int kTries = 3;
        for (int i = 0; i < kTries && !ql::EqualIgnoringCase(selected_, start_); ++i)
            ::SendMessageW(window_, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(start_.c_str()));
    }

    // What the user means: a text typed since the last selection, else the selection. A name stays as it was
    // typed while there is no selection for it to be below.
    std::wstring Meant() const {
        const HWND edit = ::FindWindowExW(window_, nullptr, L"Edit", nullptr);
        if (!::SendMessageW(edit, EM_GETMODIFY, 0, 0)) return selected_;
        const std::wstring text = TextOf(edit), typed(ql::WithoutBlanks(text));
        if (HasRoot(typed)) return OneForm(typed);
        return selected_.empty() ? typed : OneForm(selected_ + L'\\' + typed);
    }

    // Takes the folder, or tells the user why not.
    void Take() {
        const std::wstring meant = Meant();
        RWWString why;
        if (meant.empty()) {
            why = L"Please select a folder.";
        } else if (!HasRoot(meant) || !ql::IsFolder(meant.c_str())) {
            why = L"There is no folder \"" + meant + L"\".";
        } else if (validate_(meant, why)) {
            taken_ = meant;
            return;
        }
        if (!why.isNull()) ql::ShowErrorBox(TextOf(window_).c_str(), why.data());
    }

    // Folders are in the form of OneForm, and empty where there is none.
    const RWWString& title_;
    std::wstring start_;
    std::wstring selected_;  // in the tree
    std::wstring taken_;     // when the user said OK
    Validator validate_;
    HWND window_ = nullptr;
    WNDPROC systemProcedure_ = nullptr;
    bool hasFailed_ = false;
};

}  // namespace

CBrowseForFolder::CBrowseForFolder(HWND owner) noexcept : owner_(owner) {}

CBrowseForFolder::~CBrowseForFolder() = default;

void CBrowseForFolder::SetTitle(const RWWString& title) {
    ql::Completes([&] { title_ = title; });
}

void CBrowseForFolder::SetStartFolder(const RWWString& folder) {
    ql::Completes([&] { start_ = folder; });
}

CBrowseForFolder::Result CBrowseForFolder::Show() {
    return ql::FailureIfThrown(Failed, [this] {
        FolderDialog dialog(title_, start_, [this](const RWWString& folder, RWWString& why) {
            return Validate(folder, why);
        });
        const Result result = dialog.Run(owner_);
        if (result == Chosen) folder_ = dialog.folder();
        return result;
    });
}

bool CBrowseForFolder::Validate(const RWWString&, RWWString&) {
    return true;
}

bool GetDirName(HWND owner, const wchar_t* title, RWWString& folder) {
    return ql::FailureIfThrown(false, [&] {
        CBrowseForFolder browser(owner);
        browser.SetTitle(title);
        browser.SetStartFolder(folder);
        if (browser.Show() != CBrowseForFolder::Chosen) return false;
        folder = browser.GetFolder();
        return true;
    });
}

bool GetFolderPath(HWND owner, const wchar_t* title, QuilletDirectories kind, RWWString& folder) {
    RWWString picked = CQlDir::GetRecentDirectory(kind);
    if (!GetDirName(owner, title, picked)) return false;
    CQlDir::SetRecentDirectory(kind, picked);
    folder = std::move(picked);
    return true;
}
