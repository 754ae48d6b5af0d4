#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// One entry of a log, UTF-8 as it stands there. Lines that begin no entry belong to the one before them.
struct ReadEntry {
    std::int64_t time = 0;  // 20261121190857; 0 when it begins with no time
    std::string thread;
    std::string place;
    std::string text;
    const std::filesystem::path* file = nullptr;
    std::int64_t order = 0;  // its time, or that of the entry before it
};

// A file, read line by line. It hinders nobody, not even a log that is about to rename it.
class LineReader {
  public:
    // False when it cannot be opened.
    bool Open(const std::filesystem::path& path);
    // The next line without its end; false when there is none yet. The last one may be taken though it has no
    // end.
    bool Next(std::string& line, bool takesUnended);

    // Whether the path leads to the file that is open.
    bool IsAt(const std::filesystem::path& path) const;
    // Whether the file has lost what was read of it.
    bool IsCut() const;

  private:
    struct Closer {
        void operator()(void* handle) const noexcept;
    };
    bool ReadMore();

    std::unique_ptr<void, Closer> handle_;
    std::string buffer_;
    std::size_t at_ = 0;
    std::int64_t position_ = 0;
};

// A log with its backups, oldest entry first. The log may roll over meanwhile: then its files change their
// names, so that the one to come is told by the one that is open. What is removed before it is read is left
// out.
class LogReader {
  public:
    // A log that is followed is still written.
    LogReader(std::filesystem::path file, bool follows);

    bool exists() const noexcept { return isOpen_; }
    // False when there is none (yet).
    bool Next(ReadEntry& entry);
    // Looks for what was written since, through roll-overs.
    void Continue();

  private:
    enum class Within { kStart, kHeader, kEntries };
    static constexpr int kMain = 0;    // the number of what is no backup
    static constexpr int kLooks = 20;  // while the log rolls over all the time

    std::filesystem::path PathOf(int number) const;
    std::vector<int> Numbers() const;
    std::optional<int> NextBelow(int number) const;
    std::optional<int> OpenFrom(std::optional<int> number, LineReader& file) const;
    void Take(LineReader file, int number);
    void OpenOldest();
    bool FindOpen();
    bool OpenNewer();
    bool NextLine();
    bool IsEntry();

    const std::filesystem::path main_;
    const bool follows_;
    bool isOpen_ = false;
    LineReader reader_;
    int number_ = kMain;  // of the file that is open, when it was last looked for; only grows
    Within within_ = Within::kStart;
    std::string line_;
    ReadEntry pending_;  // which further lines may belong to
    ReadEntry begun_;
    bool isPending_ = false;
};

// Several logs as one, by time.
class MergedLogs {
  public:
    // False when there is no such log.
    bool Add(const std::filesystem::path& file, bool follows) {
        logs_.push_back(std::make_unique<Log>(file, follows));
        return logs_.back()->reader.exists();
    }
    // Null when there is none (yet); good until the next call.
    const ReadEntry* Next();
    void Continue();

  private:
    struct Log {
        Log(const std::filesystem::path& file, bool follows) : reader(file, follows) {}

        LogReader reader;
        ReadEntry first{};
        bool isRead = false;
        std::int64_t time = 0;  // of its last entry that had one
    };
    std::vector<std::unique_ptr<Log>> logs_;
    Log* next_ = nullptr;
};
