#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

// The only kernel object there is. Its name, should it have one, is not looked at.
struct Event {
    const bool manualReset;
    bool isSet;
    std::mutex lock{};
    std::condition_variable changed{};
};

BOOL Change(HANDLE handle, bool isSet) {
    auto& event = *static_cast<Event*>(handle);
    const std::lock_guard guard(event.lock);
    event.isSet = isSet;
    event.changed.notify_all();
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
    return new Event{manualReset != FALSE, initialState != FALSE};
}

BOOL SetEvent(HANDLE event) {
    return Change(event, true);
}

BOOL ResetEvent(HANDLE event) {
    return Change(event, false);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    auto& event = *static_cast<Event*>(handle);
    std::unique_lock guard(event.lock);
    const auto isSet = [&event] { return event.isSet; };
    if (milliseconds == INFINITE) {
        event.changed.wait(guard, isSet);
    } else if (!event.changed.wait_for(guard, std::chrono::milliseconds(milliseconds), isSet)) {
        return WAIT_TIMEOUT;
    }
    event.isSet = event.manualReset;
    return WAIT_OBJECT_0;
}

BOOL CloseHandle(HANDLE event) {
    delete static_cast<Event*>(event);
    return TRUE;
}
