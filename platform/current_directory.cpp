#include "platform/current_directory.h"

#include "platform/win32.h"

namespace ql {

// Another thread may change it between two calls.
std::wstring CurrentDirectory() {
    std::wstring directory(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetCurrentDirectoryW(static_cast<DWORD>(directory.size()), directory.data());
        const bool fits = length < directory.size();
        directory.resize(length);
        if (fits) return directory;
    }
}

}  // namespace ql
