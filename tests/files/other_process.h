#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/unique_handle.h"

inline std::wstring ChildProgram() {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return (std::filesystem::path(path).parent_path() / "files_child.exe").wstring();
}

// Another process that holds a file for the life of the object; see files_child.cpp for the ways of sharing.
class OtherProcess {
  public:
    OtherProcess(const std::wstring& path, const std::wstring& sharing) {
        static int number = 0;
        const std::wstring name =
            L"ql_files_" + std::to_wstring(::GetCurrentProcessId()) + L'_' + std::to_wstring(number++);
        held_ = ql::UniqueKernelHandle(::CreateEventW(nullptr, TRUE, FALSE, (name + L"_held").c_str()));
        done_ = ql::UniqueKernelHandle(::CreateEventW(nullptr, TRUE, FALSE, (name + L"_done").c_str()));
        std::wstring command =
            L'"' + ChildProgram() + L"\" hold " + name + L' ' + sharing + L" \"" + path + L'"';
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process = {};
        EXPECT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                     &startup, &process));
        process_ = ql::UniqueKernelHandle(process.hProcess);
        thread_ = ql::UniqueKernelHandle(process.hThread);
        const HANDLE either[] = {held_.get(), process_.get()};
        EXPECT_EQ(WAIT_OBJECT_0, ::WaitForMultipleObjects(2, either, FALSE, 60'000))
            << "the file is not held";
    }
    ~OtherProcess() {
        ::SetEvent(done_.get());
        ::WaitForSingleObject(process_.get(), 60'000);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

  private:
    ql::UniqueKernelHandle held_, done_, process_, thread_;
};
