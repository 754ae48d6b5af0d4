#include "tools/qlutil/text_file.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/win32.h"
#include "text/unicode.h"
#include "tools/qlutil/system_reason.h"

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OpenedFile = std::unique_ptr<std::FILE, FileCloser>;

std::wstring SystemReason() {
    const char* reason = std::strerror(errno);
    return {reason, reason + std::strlen(reason)};
}

std::wstring Cannot(std::wstring_view what, std::wstring_view path) {
    return L"cannot " + std::wstring(what) + L" " + std::wstring(path) + L": " + SystemReason();
}

bool ReadAll(std::FILE* file, std::string& bytes) {
    char block[64 * 1024];
    while (const std::size_t count = std::fread(block, 1, sizeof block, file)) bytes.append(block, count);
    return std::ferror(file) == 0;
}

// A new file in the folder of the target, under a short name that no file has; null, and the reason in errno,
// when none can be made.
OpenedFile NewFileBeside(const std::wstring& target, std::wstring& path) {
    constexpr int kNewFile = _O_WRONLY | _O_BINARY | _O_CREAT | _O_EXCL, kTries = 1000;
    const std::wstring folder = target.substr(0, target.find_last_of(L"\\/:") + 1);
    const unsigned long first = ::GetTickCount();
    for (unsigned long number = first; number != first + kTries; ++number) {
        path = folder + L"~ql" + std::to_wstring(number) + L".tmp";
        const int file = ::_wopen(path.c_str(), kNewFile, _S_IREAD | _S_IWRITE);
        if (file != -1) return OpenedFile(::_fdopen(file, "wb"));
        if (errno != EEXIST) break;
    }
    return nullptr;
}

bool WriteAll(OpenedFile file, std::string_view bytes) {
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return false;
    // Not every C library's close tells that the rest was not written.
    return std::fflush(file.get()) == 0 && std::fclose(file.release()) == 0;
}

std::FILE* FileOf(Stream stream) {
    return stream == Stream::kOutput ? stdout : stderr;
}

}  // namespace

std::optional<std::wstring> ReadTextFile(std::wstring_view path, std::wstring& why) {
    const bool standardInput = path == L"-";
    const OpenedFile file(standardInput ? nullptr : ::_wfopen(std::wstring(path).c_str(), L"rb"));
    if (standardInput) ::_setmode(::_fileno(stdin), _O_BINARY);
    std::string bytes;
    if ((!file && !standardInput) || !ReadAll(standardInput ? stdin : file.get(), bytes)) {
        why = Cannot(L"read", path);
        return std::nullopt;
    }
    std::optional<std::wstring> text = ql::FromUtf8(bytes);
    if (!text) why = std::wstring(path) + L" is not UTF-8 text";
    return text;
}

bool WriteTextFile(std::wstring_view path, std::wstring_view text, std::wstring& why) {
    return WriteBinaryFile(path, ql::ToUtf8(text), why);
}

bool WriteBinaryFile(std::wstring_view path, std::string_view bytes, std::wstring& why) {
    const std::wstring target(path);
    std::wstring beside;
    OpenedFile file = NewFileBeside(target, beside);
    const bool isNew = file != nullptr;
    if (!WriteAll(std::move(file), bytes)) {
        why = Cannot(L"write", path);
        if (isNew) ::_wremove(beside.c_str());
        return false;
    }
    if (::MoveFileExW(beside.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;  // in one step
    why = L"cannot replace " + target + L": " + ReasonOf(::GetLastError());
    ::_wremove(beside.c_str());
    return false;
}

// The C library takes every device for one, and then writes character by character.
bool IsTerminal(Stream stream) {
    const std::intptr_t handle = ::_get_osfhandle(::_fileno(FileOf(stream)));
    DWORD mode = 0;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the C library tells handles
    return ::GetConsoleMode(reinterpret_cast<HANDLE>(handle), &mode) != FALSE;
}

bool WriteToStream(Stream stream, std::wstring_view text) {
    std::FILE* const file = FileOf(stream);
    if (IsTerminal(stream)) {
        ::_setmode(::_fileno(file), _O_U8TEXT);
        return std::fputws(std::wstring(text).c_str(), file) >= 0 && std::fflush(file) == 0;
    }
    ::_setmode(::_fileno(file), _O_BINARY);
    const std::string bytes = ql::ToUtf8(text);
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && std::fflush(file) == 0;
}
