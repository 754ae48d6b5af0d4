#pragma once

#include <atomic>

#include "platform/win32.h"

// A breakpoint in the library: the first thread to meet it stands still there.
class StoppedThread {
  public:
    explicit StoppedThread(unsigned long offset)
        : at_(reinterpret_cast<unsigned char*>(::GetModuleHandleW(L"Quillet.Platform.Native.Util.dll")) +
              offset) {
        s_planted = this;
        ::AddVectoredExceptionHandler(1, Look);
        original_ = Put(kBreakpoint);
    }
    ~StoppedThread() { Put(original_); }
    StoppedThread& operator=(StoppedThread&&) = delete;

    bool isMet() const { return isMet_; }

  private:
    static constexpr unsigned char kBreakpoint = 0xCC;

    unsigned char Put(unsigned char code) {
        DWORD before = 0;
        ::VirtualProtect(at_, 1, PAGE_EXECUTE_READWRITE, &before);
        const unsigned char was = *at_;
        *at_ = code;
        ::VirtualProtect(at_, 1, before, &before);
        ::FlushInstructionCache(::GetCurrentProcess(), at_, 1);
        return was;
    }

    static LONG CALLBACK Look(EXCEPTION_POINTERS* pointers) {
        StoppedThread& own = *s_planted;
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != EXCEPTION_BREAKPOINT || record.ExceptionAddress != own.at_)
            return EXCEPTION_CONTINUE_SEARCH;
        own.Put(own.original_);
        own.isMet_ = true;
        ::Sleep(INFINITE);
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline StoppedThread* s_planted = nullptr;
    unsigned char* const at_;
    unsigned char original_ = 0;
    std::atomic<bool> isMet_ = false;
};
