#pragma once

#include <atomic>

#include "tests/support/replaced_import.h"

// A breakpoint in the library: the first thread to meet it stands still there.
class StoppedThread {
  public:
    explicit StoppedThread(unsigned long offset) {
        s_at = reinterpret_cast<unsigned char*>(::GetModuleHandleW(kLibrary)) + offset;
        s_was = *s_at;
        ::AddVectoredExceptionHandler(1, Look);
        Put(0xCC);
    }
    ~StoppedThread() { Put(s_was); }
    StoppedThread& operator=(StoppedThread&&) = delete;

    static bool IsMet() { return s_isMet; }

  private:
    static void Put(unsigned char code) {
        ::WriteProcessMemory(::GetCurrentProcess(), s_at, &code, sizeof code, nullptr);
    }

    static LONG CALLBACK Look(EXCEPTION_POINTERS* pointers) {
        if (pointers->ExceptionRecord->ExceptionAddress != s_at) return EXCEPTION_CONTINUE_SEARCH;
        Put(s_was);
        s_isMet = true;
        ::Sleep(INFINITE);
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline unsigned char* s_at = nullptr;
    static inline unsigned char s_was = 0;
    static inline std::atomic<bool> s_isMet = false;
};
