#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/export.h"

// The process-wide log: any thread queues lines, one writer thread hands them to the outputs. A caller never
// touches a file and takes no lock. Lines are handled strictly in the order in which they were queued.
//
// A line that was accepted reaches the outputs' Write, also where nobody calls CloseLogs: when the process
// ends by ExitProcess, exit or a return from main, what is left is written on the thread that ends it. A
// process that is killed, or that crashes, loses what was queued in that instant: whenever the queue runs
// empty, the writer flushes the outputs that buffer. The library stays loaded from the first InitializeLog
// on, whatever FreeLibrary asks.
//
// Lines that are lost all the same are counted: for want of memory, at the bound of the backlog, on a full
// disk, or because an output threw. The log says so before its next line of any level that has an output: "12
// lines were lost: the backlog was full".
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

// Where lines go. Only the writer thread calls an output, or, where it cannot begin, the thread that closes
// the log: one at a time, so an output needs no lock of its own; it may use the log itself. At the end of a
// process that did not call CloseLogs, the thread that ends it takes over, after the host's static objects
// are gone: a line, flush or close that the writer was amid is then asked for again, and outputs are closed
// but not destroyed. An output that ends the process itself gets no further line, and its Close comes last.
class QL_API ILogOutput {
  public:
    virtual void Write(QLLogLevel level,
                       const wchar_t* text) = 0;  // one finished line, its line feed included
    virtual void Flush() = 0;                     // hands what is buffered to the system
    virtual void Close() = 0;                     // writes after it must do nothing; may come twice
    virtual ~ILogOutput();
};

// An output that holds lines back until they are flushed. The writer calls its Flush also whenever the queue
// runs empty.
class QL_API IBufferedLogOutput : public ILogOutput {
  public:
    ~IBufferedLogOutput() override;
};

// What a host may queue itself. The same message may be queued several times.
class QL_API LogMessage {
  public:
    // What the writer does with it.
    enum MessageType : std::int32_t { kWrite = 0, kFlush = 1, kClose = 2 };

    virtual ~LogMessage();
    MessageType type() const noexcept { return type_; }  // settled at construction

  protected:
    // For the three classes below: the writer takes a message for the one that its type says.
    explicit LogMessage(MessageType type) noexcept : type_(type) {}
    LogMessage(const LogMessage&) noexcept = default;
    LogMessage& operator=(const LogMessage&) noexcept = default;

  private:
    MessageType type_;
};

// A line to be written.
class QL_API WriteLogMessage : public LogMessage {
  public:
    // The text is written as it is: a line feed at its end is the caller's to give.
    WriteLogMessage(QLLogLevel level, std::wstring text) noexcept
        : LogMessage(kWrite), text_(std::move(text)), level_(level) {}

    // What it was made with; the text lives as long as the message.
    const wchar_t* text() const noexcept { return text_.c_str(); }
    QLLogLevel level() const noexcept { return level_; }

  private:
    std::wstring text_;
    QLLogLevel level_;
};

// Has every output put down what it holds.
class QL_API FlushLogMessage : public LogMessage {
  public:
    FlushLogMessage() noexcept : LogMessage(kFlush) {}
};

// Signals an event, which stays its creator's, when it is destroyed: the close is then done.
class QL_API CloseLogMessage : public LogMessage {
  public:
    // An event's handle, open until it is signalled; null for none.
    explicit CloseLogMessage(void* event) noexcept : LogMessage(kClose), event_(event) {}
    CloseLogMessage(const CloseLogMessage&) = delete;
    CloseLogMessage& operator=(const CloseLogMessage&) = delete;
    ~CloseLogMessage() override;

  private:
    void* event_;
};

// What becomes of a line when the backlog is at its bound.
enum class QLLogBacklog { kWait, kDrop };

// Every operation may be called by any thread at any time, and none throws.
//
//     QLLogger::InitializeLog(L"C:\\Logs\\host.log", QLLOG_ERROR | QLLOG_WARNING);
//     QLLogger::PutMessage(QLLOG_ERROR, L"no room left\n");
//     QLLogger::CloseLogs();
class QL_API QLLogger {
  public:
    // Copies are the one log: the class has no state of its own.
    QLLogger(const QLLogger&) = default;
    QLLogger& operator=(const QLLogger&) = default;

    // As CloseLogs; the library's own logger does so at the process's end.
    virtual ~QLLogger();

    // Registers the output under each level of the mask and starts the writer thread if it does not run; so
    // does a mask of 0, which registers nothing. A null output is not registered; neither is one for which
    // there is no memory. Lines queued before are written now. Where no thread can be started, lines stay
    // queued until one can, or until CloseLogs writes them.
    static void InitializeLog(std::shared_ptr<ILogOutput> output, QLLogLevel mask) noexcept;
    // The same with a QLLoggerOutputs::FileOutput on the file. A file that cannot be opened gets an entry in
    // the event log, of the source "Quillet.Platform.Native.Util"; to be told, register a FileOutput and ask
    // it.
    static void InitializeLog(const wchar_t* fileName, QLLogLevel mask) noexcept;

    // Queues a copy of the text as it stands; null does nothing. Returns at once, but at the bound of the
    // backlog. An idle log writes it at once, a busy one within some ten milliseconds.
    static void PutMessage(QLLogLevel level, const wchar_t* text) noexcept;
    // Queues a flush of every output, level by level; returns at once. Dropped when memory is short.
    static void FlushLogs() noexcept;
    // Returns when everything queued before is written and every output is closed and released. The writer
    // drops the lines that it finds while no output is registered; one put shortly before the next
    // InitializeLog may still be written there. Before the first InitializeLog it does
    // nothing. Called by an output, it does not wait. When memory is short it may close nothing. For a writer
    // that cannot begin, as none can while a DllMain that started the log runs, it waits a second, and then
    // does all that on the calling thread.
    static void CloseLogs() noexcept;

    // At most so many bytes of lines wait for the writer; 0, as at first, is no bound. Then callers wait, or
    // the line is dropped and counted, as it is in both cases where there is no writer. A line goes in when
    // none waits, whatever its size. Where callers wait, there is no bound for an output and until the writer
    // has begun; and none for what is logged while the process ends, nor for messages that a host queues
    // itself.
    static void SetBacklogLimit(std::size_t bytes, QLLogBacklog whenFull) noexcept;
    // How many lines this process has lost so far.
    static std::uint32_t LostLines() noexcept;

    static QLLogger& GetLogger() noexcept;  // the library's own object

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
    static bool StartWriter() noexcept;
    static void QueueCloseAndWait();

    static QLLogger s_logger;
};
