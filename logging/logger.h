#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/export.h"

namespace ql {
class LineBlock;
class LogQueue;
}  // namespace ql

// The process-wide log: any thread queues lines, one writer thread hands them to the outputs. A caller never
// touches a file. Lines are handled strictly in the order in which they were queued.
//
// No line that was accepted is lost, even where nobody calls CloseLogs: when the process ends and the system
// has ended the writer thread already, what is left is written on the thread that ends the process. The
// library stays loaded from the first InitializeLog on, whatever FreeLibrary asks.
//
// Kept on purpose:
//  - a line of several levels goes to the outputs of its lowest bits up to the first level that has none;
//  - an output registered under several levels is flushed and closed once for each;
//  - an output that throws costs the later outputs that one line; the log goes on with the next.

// One bit a level; a mask is several of them. The library never prints a level.
enum QLLogLevel : std::int32_t { QLLOG_ERROR = 1, QLLOG_WARNING = 2, QLLOG_INFO = 4, QLLOG_DEBUG = 8 };

// A mask of both.
constexpr QLLogLevel operator|(QLLogLevel a, QLLogLevel b) noexcept {
    return static_cast<QLLogLevel>(static_cast<std::int32_t>(a) | static_cast<std::int32_t>(b));
}

// Where lines go. Only the writer thread calls an output, so it needs no lock of its own. At the end of a
// process that did not call CloseLogs, the thread that ends it may take over, after the host's static objects
// are gone; the line in hand is then written again unless Write had returned, and outputs are closed but not
// destroyed.
class QL_API ILogOutput {
  public:
    virtual void Write(QLLogLevel level,
                       const wchar_t* text) = 0;  // one finished line, its line feed included
    virtual void Flush() = 0;                     // hands what is buffered to the system
    virtual void Close() = 0;                     // writes after it must do nothing
    virtual ~ILogOutput();
};

// What stands in the queue. A message is queued once.
class QL_API LogMessage {
  public:
    enum MessageType : std::int32_t { kWrite = 0, kFlush = 1, kClose = 2 };

    virtual ~LogMessage();
    MessageType type() const noexcept { return type_; }

  protected:
    explicit LogMessage(MessageType type) noexcept : type_(type) {}
    // The place in the queue stays with the original.
    LogMessage(const LogMessage& other) noexcept : type_(other.type_) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is lost by it
    LogMessage& operator=(const LogMessage& other) noexcept {
        type_ = other.type_;
        return *this;
    }

  private:
    friend class ql::LogQueue;
    friend class QLLogger;

    MessageType type_;
    unsigned delivered_ = 0;  // outputs that have had it
    std::atomic<LogMessage*> older_ = nullptr;
    std::atomic<LogMessage*> newer_ = nullptr;
    std::shared_ptr<LogMessage> self_;  // the queue's own reference
};

// A line to be written.
class QL_API WriteLogMessage : public LogMessage {
  public:
    WriteLogMessage(QLLogLevel level, std::wstring text) noexcept
        : LogMessage(kWrite), text_(std::move(text)), level_(level) {}
    WriteLogMessage(const WriteLogMessage& other)
        : LogMessage(other), text_(other.text()), level_(other.level_) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is lost by it
    WriteLogMessage& operator=(const WriteLogMessage& other) {
        LogMessage::operator=(other);
        text_ = other.text();
        placed_ = nullptr;
        level_ = other.level_;
        return *this;
    }

    const wchar_t* text() const noexcept { return placed_ ? placed_ : text_.c_str(); }
    QLLogLevel level() const noexcept { return level_; }

  private:
    friend class QLLogger;
    // In a block, together with its text.
    WriteLogMessage(QLLogLevel level, const wchar_t* placed, ql::LineBlock* block) noexcept
        : LogMessage(kWrite), level_(level), placed_(placed), block_(block) {}

    std::wstring text_;
    QLLogLevel level_;
    const wchar_t* placed_ = nullptr;
    ql::LineBlock* block_ = nullptr;
};

// Has every output put down what it holds.
class QL_API FlushLogMessage : public LogMessage {
  public:
    FlushLogMessage() noexcept : LogMessage(kFlush) {}
};

// Signals an event, which stays its creator's, when it is destroyed: the close is then done.
class QL_API CloseLogMessage : public LogMessage {
  public:
    explicit CloseLogMessage(void* event) noexcept : LogMessage(kClose), event_(event) {}
    CloseLogMessage(const CloseLogMessage&) = delete;
    CloseLogMessage& operator=(const CloseLogMessage&) = delete;
    ~CloseLogMessage() override;

  private:
    void* event_;
};

// Every operation may be called by any thread at any time, and none throws. When memory is short, what was to
// be queued is dropped.
//
//     QLLogger::InitializeLog(L"C:\\Logs\\host.log", QLLOG_ERROR | QLLOG_WARNING);
//     QLLogger::PutMessage(QLLOG_ERROR, L"no room left\n");
//     QLLogger::CloseLogs();
class QL_API QLLogger {
  public:
    QLLogger(const QLLogger&) = default;
    QLLogger& operator=(const QLLogger&) = default;
    // Closes the logs if the writer thread was ever started; the library's own logger does so at the
    // process's end.
    virtual ~QLLogger();

    // Registers the output under each level of the mask and starts the writer thread if it does not run; so
    // does a mask of 0, which registers nothing. A null output is not registered. Lines queued before are
    // written now.
    static void InitializeLog(std::shared_ptr<ILogOutput> output, QLLogLevel mask) noexcept;
    // The same with a QLLoggerOutputs::FileOutput on the file. A file that cannot be opened is not reported.
    static void InitializeLog(const wchar_t* fileName, QLLogLevel mask) noexcept;

    // Queues a copy of the text as it stands; null does nothing. Returns at once. An idle log writes it at
    // once, a busy one within some ten milliseconds.
    static void PutMessage(QLLogLevel level, const wchar_t* text) noexcept;
    // Queues a flush of every output, level by level; returns at once.
    static void FlushLogs() noexcept;
    // Returns when everything queued before is written and every output is closed and released; lines are
    // dropped from then on until outputs are registered again. Before the first InitializeLog it does
    // nothing. Called by an output, it does not wait.
    static void CloseLogs() noexcept;

    static QLLogger& GetLogger() noexcept;

  protected:
    QLLogger() noexcept = default;

    // For one level at a time; other masks and null outputs are ignored.
    static void AddOutput(QLLogLevel level, std::shared_ptr<ILogOutput> output);
    // Any message of the three types; others are ignored in their turn. Null is ignored.
    static void PushEvent(std::shared_ptr<LogMessage> message) noexcept;

    // The writer thread and what it does with a message of each type.
    static std::uint32_t LoggerThreadProc(void*);
    static void WriteMessage(const std::shared_ptr<LogMessage>& message);
    static void FlushLog(const std::shared_ptr<LogMessage>& message);
    static void CloseLog(const std::shared_ptr<LogMessage>& message);

  private:
    friend class QLLoggerLevelInserter;
    static void PutLine(QLLogLevel level, std::wstring_view text) noexcept;
    static std::shared_ptr<LogMessage> NewLine(QLLogLevel level, std::wstring_view text);
    static void StartWriter() noexcept;
    static bool HandleNextAsWriter() noexcept;
    static void HandleInHand() noexcept;
    static void Release(LogMessage& message) noexcept;
    static void Handle(const std::shared_ptr<LogMessage>& message) noexcept;
    static void QueueCloseAndWait();
    static void Drain() noexcept;

    static QLLogger s_logger;
};
