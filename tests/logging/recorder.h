#pragma once

#include <vector>

#include "logging/logger.h"

// What an output was asked, one text a call: "1:text", "flush", "close". Read it after CloseLogs.
struct Recorder : ILogOutput {
    void Write(QLLogLevel level, const wchar_t* text) override {
        calls.push_back(std::to_wstring(level) + L':' + text);
    }
    void Flush() override { calls.push_back(L"flush"); }
    void Close() override { calls.push_back(L"close"); }

    std::vector<std::wstring> calls;
};

using Calls = std::vector<std::wstring>;

// The calls of one output registered under a mask while the work is done and the logs are closed.
template <class Work>
Calls CallsDuring(QLLogLevel mask, Work work) {
    auto recorder = std::make_shared<Recorder>();
    QLLogger::InitializeLog(recorder, mask);
    work();
    QLLogger::CloseLogs();
    return recorder->calls;
}
