#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "tests/native/system_memory.h"

namespace memory {

// One try of a row's calls: the allocation of that number, counted from 0, fails, and no other does.
class Attempt {
  public:
    explicit Attempt(unsigned turn) : turn_(turn) {}

    template <class Call>
    void operator()(Call&& call) {
        current_ = this;
        try {
            call();
        } catch (...) {
            ADD_FAILURE() << "an exception left the call";
        }
        current_ = nullptr;
    }
    bool HasFailed() const { return hasFailed_; }  // else the calls ask for fewer

    // For operator new, which memory_test.cpp has.
    static bool RefusesNext() {
        if (!current_ || current_->hasFailed_ || fake::SystemMemory::IsUsed()) return false;
        return current_->hasFailed_ = current_->turn_-- == 0;
    }

  private:
    inline static thread_local Attempt* current_ = nullptr;
    unsigned turn_;
    bool hasFailed_ = false;
};

// A row makes its objects, puts the calls to the attempt, and looks at what is left: a result, and objects
// that can be used further.
struct Row {
    const char* what;
    std::function<void(Attempt&)> run;
};

// For calls that leave nothing to look at.
inline Row Calls(const char* what, void (*call)()) {
    return {what, [call](Attempt& attempt) { attempt(call); }};
}

// The whole result, or none.
template <class Answer>
Row Answers(const char* what, Answer answer) {
    return {what, [answer](Attempt& attempt) {
                const auto whole = answer();
                decltype(answer()) text{};
                attempt([&] { text = answer(); });
                if (!text.empty()) EXPECT_EQ(whole, text);
            }};
}

// The rows of the rooms.
std::vector<Row> TextCalls();      // rw, text, names
std::vector<Row> SettingsCalls();  // json, settings, prefs
std::vector<Row> ProgramCalls();   // cmdline, files, textproc, logging, engine

}  // namespace memory
