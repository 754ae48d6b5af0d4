#pragma once

#include "platform/export.h"
#include "settings/settings_store.h"

// The library's start and end as objects: what an object began it ends, in the reverse order, and what failed
// half-way is ended at once. No member throws.
//
//     int main() {
//         const QLLibraryScope library;            // the process
//         const QLThreadScope thread;              // each thread that reads or writes preferences
//         if (!library.ok() || !thread.ok()) return 1;
//         {
//             const QLContextScope context;        // a piece of work with settings of its own
//             context.settings()->SetFromSerializedSettings(document);
//             std::thread helper([id = context.id()] { const QLContextScope joined(id); ... });
//             helper.join();
//         }                                        // detached, and gone with the last thread that had joined
//     }

// The whole library: thread slots, InitializeUtil, settings stores. Several components of a process may each
// have one, on any threads: the first starts the library, the last ends it, and nothing of it may be in use
// then. A process that calls TlsmInitialize or CQlsSettings::Initialize itself uses no scope: ok is false
// after TlsmInitialize. A store that CQlsSettings::Initialize made without it is taken over, and ends with
// the last scope.
class QL_API QLLibraryScope {
  public:
    QLLibraryScope() noexcept;
    ~QLLibraryScope();
    QLLibraryScope(const QLLibraryScope&) = delete;
    QLLibraryScope& operator=(const QLLibraryScope&) = delete;

    bool ok() const noexcept { return ok_; }  // whether the library runs

  private:
    bool ok_;
};

// The calling thread, within the life of a QLLibraryScope; made and destroyed on it. Within another one of
// the same thread, or on a thread that is initialised already, it begins and ends nothing.
class QL_API QLThreadScope {
  public:
    QLThreadScope() noexcept;
    ~QLThreadScope();
    QLThreadScope(const QLThreadScope&) = delete;
    QLThreadScope& operator=(const QLThreadScope&) = delete;

    bool ok() const noexcept { return ok_; }  // whether the thread is initialised

  private:
    bool owns_;
    bool ok_;
};

// The calling thread attached to a context, a new one or that of another thread; it need not be initialised.
// Not ok when the thread is attached to another context, or memory is short: the thread is then as it was.
class QL_API QLContextScope {
  public:
    QLContextScope() noexcept;
    explicit QLContextScope(int id) noexcept;  // of a context that somebody holds a reference to meanwhile
    ~QLContextScope();
    QLContextScope(const QLContextScope&) = delete;
    QLContextScope& operator=(const QLContextScope&) = delete;

    bool ok() const noexcept { return attached_; }  // to this context
    int id() const noexcept { return id_; }         // -1 when no context could be made

    // The context's own store, made when there is none, so that the thread reads the global one no longer;
    // valid while the context has references; null when not ok.
    CQlsSettings* settings() const noexcept;

  private:
    QLThreadScope thread_;
    int id_;
    bool created_;
    bool attached_;
};
