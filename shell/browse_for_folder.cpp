#include "shell/browse_for_folder.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/message_box.h"
#include "platform/win32.h"
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

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsSeparator(wchar_t unit) {
    return kSeparators.find(unit) != std::wstring_view::npos;
}

// "C:", "C:\…" or "\\server\…": nothing that depends on a current directory.
bool HasRoot(std::wstring_view path) {
    if (path.size() < 2) return false;
    if (path[1] == L':') return path.size() == 2 || IsSeparator(path[2]);
    return IsSeparator(path[0]) && IsSeparator(path[1]);
}

std::wstring WithoutLastSeparator(std::wstring path) {
    constexpr std::size_t kRootLength = 3;  // "C:\"
    if (path.size() > kRootLength && IsSeparator(path.back())) path.pop_back();
    return path;
}

// With single backslashes and without "." and "..".
std::wstring FullPath(std::wstring path) {
    if (path.size() == 2) path += L'\\';
    const DWORD capacity = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring full(capacity, L'\0');
    full.resize(::GetFullPathNameW(path.c_str(), capacity, full.data(), nullptr));
    return WithoutLastSeparator(std::move(full));
}

// The folder itself or the nearest one above it that exists; empty when there is none.
std::wstring NearestFolder(std::wstring path) {
    if (!HasRoot(path)) return {};
    while (!path.empty() && !IsFolder(path)) {
        const std::size_t last = path.find_last_of(kSeparators);
        path.resize(last == std::wstring::npos ? 0 : last);
    }
    return path.empty() ? path : FullPath(std::move(path));
}

std::wstring PathOf(const ITEMIDLIST* item) {
    wchar_t path[MAX_PATH];
    return item && ::SHGetPathFromIDListW(item, path) ? path : std::wstring();
}

std::wstring Trimmed(std::wstring text) {
    text.erase(text.find_last_not_of(L" \t") + 1);
    text.erase(0, text.find_first_not_of(L" \t"));
    return text;
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

// One run of the dialog. The system tells about it through a callback but closes it without asking, so its
// messages pass through here first.
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
        if (!systemProcedure_) return CBrowseForFolder::Failed;
        return item && !folder_.empty() ? CBrowseForFolder::Chosen : CBrowseForFolder::Cancelled;
    }

    const std::wstring& folder() const noexcept { return folder_; }

  private:
    // NOLINTBEGIN(performance-no-int-to-ptr): the system's way of handing things
    static int CALLBACK OnEvent(HWND window, UINT event, LPARAM item, LPARAM data) {
        auto* const self = reinterpret_cast<FolderDialog*>(data);
        if (event == BFFM_INITIALIZED) self->Open(window);
        if (event == BFFM_SELCHANGED) self->selected_ = PathOf(reinterpret_cast<const ITEMIDLIST*>(item));
        return 0;
    }

    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM w, LPARAM l) {
        auto* const self = static_cast<FolderDialog*>(::GetPropW(window, kSelfProperty));
        const WNDPROC systemProcedure = self->systemProcedure_;
        if (message == WM_COMMAND && LOWORD(w) == IDOK && !self->Take()) return 0;
        if (message == WM_NCDESTROY) ::RemovePropW(window, kSelfProperty);
        return ::CallWindowProcW(systemProcedure, window, message, w, l);
    }

    void Open(HWND window) {
        window_ = window;
        if (!title_.isNull()) ::SetWindowTextW(window, title_.data());
        SelectStart();
        if (!::SetPropW(window, kSelfProperty, this)) return;
        systemProcedure_ = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage)));
    }
    // NOLINTEND(performance-no-int-to-ptr)

    // The tree is not sure to find a folder at the first asking: it lists folders only as they are opened.
    void SelectStart() {
        constexpr int kTries = 3;
        for (int i = 0; i < kTries && !ql::EqualIgnoringCase(selected_, start_); ++i)
            ::SendMessageW(window_, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(start_.c_str()));
    }

    // What the user means: a text typed since the last selection, else the selection.
    std::wstring Meant() const {
        const HWND edit = ::FindWindowExW(window_, nullptr, L"Edit", nullptr);
        if (!edit || !::SendMessageW(edit, EM_GETMODIFY, 0, 0)) return selected_;
        const std::wstring typed = Trimmed(TextOf(edit));
        return FullPath(HasRoot(typed) ? typed : selected_ + L'\\' + typed);
    }

    // Takes the folder, or tells the user why not.
    bool Take() {
        const std::wstring meant = Meant();
        RWWString why;
        if (!IsFolder(meant)) {
            why = L"There is no folder \"" + meant + L"\".";
        } else if (validate_(meant, why)) {
            folder_ = meant;
            return true;
        }
        if (!why.isNull()) ql::ShowErrorBox(TextOf(window_).c_str(), why.data());
        return false;
    }

    const RWWString& title_;
    std::wstring start_;
    Validator validate_;
    HWND window_ = nullptr;
    WNDPROC systemProcedure_ = nullptr;
    std::wstring selected_;
    std::wstring folder_;
};

}  // namespace

CBrowseForFolder::CBrowseForFolder(HWND owner) noexcept : owner_(owner) {}

CBrowseForFolder::~CBrowseForFolder() = default;

void CBrowseForFolder::SetTitle(const RWWString& title) {
    title_ = title;
}

void CBrowseForFolder::SetStartFolder(const RWWString& folder) {
    start_ = folder;
}

CBrowseForFolder::Result CBrowseForFolder::Show() {
    FolderDialog dialog(title_, start_,
                        [this](const RWWString& folder, RWWString& why) { return Validate(folder, why); });
    const Result result = dialog.Run(owner_);
    if (result == Chosen) folder_ = dialog.folder();
    return result;
}

bool CBrowseForFolder::Validate(const RWWString&, RWWString&) {
    return true;
}

bool GetDirName(HWND owner, const wchar_t* title, RWWString& folder) {
    CBrowseForFolder browser(owner);
    browser.SetTitle(title);
    browser.SetStartFolder(folder);
    if (browser.Show() != CBrowseForFolder::Chosen) return false;
    folder = browser.GetFolder();
    return true;
}

bool GetFolderPath(HWND owner, const wchar_t* title, QuilletDirectories kind, RWWString& folder) {
    RWWString picked = CQlDir::GetRecentDirectory(kind);
    if (!GetDirName(owner, title, picked)) return false;
    CQlDir::SetRecentDirectory(kind, picked);
    folder = std::move(picked);
    return true;
}
