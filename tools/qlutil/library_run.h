#pragma once

// Starts the library in its order when made and stops it in the reverse order when destroyed; the calling thread is
// attached to no settings context. ok tells whether every step answered true.
class LibraryRun {
  public:
    LibraryRun();
    ~LibraryRun();
    LibraryRun(const LibraryRun&) = delete;
    LibraryRun& operator=(const LibraryRun&) = delete;

    bool ok() const noexcept { return ok_; }

  private:
    bool ok_;
};

// The same for a further thread that uses settings.
class LibraryThread {
  public:
    LibraryThread();
    ~LibraryThread();
    LibraryThread(const LibraryThread&) = delete;
    LibraryThread& operator=(const LibraryThread&) = delete;
};
