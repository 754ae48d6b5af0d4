#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// Work that can take long: from its second second on, a terminal's standard error shows what is being done
// and for how long. The line is wiped away when the work ends; where standard error is no terminal, nothing
// is shown.
class Progress {
  public:
    explicit Progress(std::wstring doing);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    bool IsShown() const { return watcher_.joinable(); }

    // From now on this is done. Safe on any thread.
    void Now(std::wstring doing);

  private:
    void Watch();

    std::mutex mutex_;
    bool hasEnded_ = false;  // and no stop token: with this compiler, the end of one can wait for good
    std::condition_variable ended_;
    std::wstring doing_;
    std::jthread watcher_;  // the last: it uses the others until it has ended
};
