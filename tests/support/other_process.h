#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/unique_handle.h"
#include "tests/support/start_process.h"

inline std::wstring ChildProgram() {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return (std::filesystem::path(path).parent_path() / "files_child.exe").wstring();
}

constexpr DWORD kShareNothing = 0, kShareReading = FILE_SHARE_READ,
                kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;

// Another process that holds a file for the life of the object, and lets others do what is shared meanwhile.
class OtherProcess {
  public:
    OtherProcess(const std::wstring& path, DWORD sharing) {
        static int number = 0;
        const std::wstring name =
            L"ql_files_" + std::to_wstring(::GetCurrentProcessId()) + L'_' + std::to_wstring(number++);
        const ql::UniqueKernelHandle held(::CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
        process_ = StartProcess(L'"' + ChildProgram() + L"\" hold " + name + L' ' + std::to_wstring(sharing) +
                                L" \"" + path + L'"');
        const HANDLE either[] = {held.get(), process_.get()};
        EXPECT_EQ(WAIT_OBJECT_0, ::WaitForMultipleObjects(2, either, FALSE, 60'000))
            << "the file is not held";
    }
    ~OtherProcess() {
        ::TerminateProcess(process_.get(), 0);
        ::WaitForSingleObject(process_.get(), 60'000);
    }
    OtherProcess& operator=(OtherProcess&&) = delete;

  private:
    ql::UniqueKernelHandle process_;
};
