#include "platform/windows_version.h"

#include "platform/win32.h"

namespace ql {

bool IsWindows6OrLater() noexcept {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    return ::GetVersionExW(&version) && version.dwMajorVersion >= 6;
}

}  // namespace ql
