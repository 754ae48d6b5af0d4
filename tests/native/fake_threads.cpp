#include <windows.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

// An event, or a thread, which is one that is set when it ends. A name is not looked at.
struct Object {
    const bool manualReset;
    bool isSet;
};

// A handle is one reference to its object; a running thread holds another.
using Reference = std::shared_ptr<Object>;

Object& At(HANDLE handle) {
    return **static_cast<Reference*>(handle);
}

// One lock and one signal for all objects. Never destroyed: threads still wait when the program ends.
struct Waiting {
    std::mutex lock{};
    std::condition_variable changed{};
};

Waiting& AllWaiting() {
    static Waiting& waiting = *new Waiting;
    return waiting;
}

BOOL Change(Object& object, bool isSet) {
    Waiting& waiting = AllWaiting();
    const std::lock_guard guard(waiting.lock);
    object.isSet = isSet;
    waiting.changed.notify_all();
    return TRUE;
}

}  // namespace

DWORD GetLastError() {
    return t_lastError;
}

void SetLastError(DWORD error) {
    t_lastError = error;
}

BOOL InitializeCriticalSectionAndSpinCount(CRITICAL_SECTION* section, DWORD) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&section->mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return TRUE;
}

void EnterCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_lock(&section->mutex);
}

void LeaveCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_unlock(&section->mutex);
}

void DeleteCriticalSection(CRITICAL_SECTION* section) {
    pthread_mutex_destroy(&section->mutex);
}

// Never destroyed, as on the system; the C library's holds no memory.
void InitializeSRWLock(SRWLOCK* lock) {
    pthread_rwlock_init(&lock->lock, nullptr);
}

void AcquireSRWLockExclusive(SRWLOCK* lock) {
    pthread_rwlock_wrlock(&lock->lock);
}

void ReleaseSRWLockExclusive(SRWLOCK* lock) {
    pthread_rwlock_unlock(&lock->lock);
}

void AcquireSRWLockShared(SRWLOCK* lock) {
    pthread_rwlock_rdlock(&lock->lock);
}

void ReleaseSRWLockShared(SRWLOCK* lock) {
    pthread_rwlock_unlock(&lock->lock);
}

DWORD TlsAlloc() {
    pthread_key_t key = 0;
    return pthread_key_create(&key, nullptr) == 0 ? key : TLS_OUT_OF_INDEXES;
}

BOOL TlsFree(DWORD index) {
    return pthread_key_delete(index) == 0;
}

void* TlsGetValue(DWORD index) {
    SetLastError(ERROR_SUCCESS);
    return pthread_getspecific(index);
}

BOOL TlsSetValue(DWORD index, void* value) {
    return pthread_setspecific(index, value) == 0;
}

HANDLE CreateEventW(SECURITY_ATTRIBUTES*, BOOL manualReset, BOOL initialState, const wchar_t*) {
    return new Reference(new Object{manualReset != FALSE, initialState != FALSE});
}

BOOL SetEvent(HANDLE event) {
    return Change(At(event), true);
}

BOOL ResetEvent(HANDLE event) {
    return Change(At(event), false);
}

DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    return WaitForMultipleObjects(1, &object, FALSE, milliseconds);
}

// For any of the objects; none waits for all.
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all, DWORD milliseconds) {
    if (count == 0 || count > MAXIMUM_WAIT_OBJECTS || all) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return WAIT_FAILED;
    }
    const HANDLE* const end = objects + count;
    const HANDLE* set = end;
    const auto anyIsSet = [&] {
        set = std::find_if(objects, end, [](HANDLE handle) { return At(handle).isSet; });
        return set != end;
    };
    Waiting& waiting = AllWaiting();
    std::unique_lock guard(waiting.lock);
    if (milliseconds == INFINITE) {
        waiting.changed.wait(guard, anyIsSet);
    } else if (!waiting.changed.wait_for(guard, std::chrono::milliseconds(milliseconds), anyIsSet)) {
        return WAIT_TIMEOUT;
    }
    At(*set).isSet = At(*set).manualReset;
    return WAIT_OBJECT_0 + static_cast<DWORD>(set - objects);
}

BOOL CloseHandle(HANDLE object) {
    delete static_cast<Reference*>(object);
    return TRUE;
}

HANDLE CreateThread(SECURITY_ATTRIBUTES*, std::size_t, DWORD (*run)(void*), void* argument, DWORD,
                    DWORD* id) {
    const Reference thread(new Object{true, false});
    std::promise<DWORD> started;
    std::future<DWORD> startedId = started.get_future();
    try {
        std::thread([thread, run, argument, started = std::move(started)]() mutable {
            started.set_value(GetCurrentThreadId());
            run(argument);
            Change(*thread, true);
        }).detach();
    } catch (const std::system_error&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const DWORD newId = startedId.get();
    if (id) *id = newId;
    return new Reference(thread);
}

DWORD GetCurrentThreadId() {
    return static_cast<DWORD>(gettid());
}

void Sleep(DWORD milliseconds) {
    while (milliseconds == INFINITE) pause();
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

DWORD GetTickCount() {
    using std::chrono::steady_clock;
    const auto now =
        std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch());
    return static_cast<DWORD>(now.count());
}
