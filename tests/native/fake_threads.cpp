#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

// The system's numbers are multiples of four.
std::atomic<DWORD> g_lastId = 0;
thread_local DWORD t_id = g_lastId += 4;

// An event, or a thread, which is one that is set when it ends.
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
std::mutex& g_lock = *new std::mutex;
std::condition_variable& g_changed = *new std::condition_variable;

BOOL Set(Object& object) {
    const std::lock_guard guard(g_lock);
    object.isSet = true;
    g_changed.notify_all();
    return TRUE;
}

}  // namespace

DWORD FlsAlloc(void (*atThreadsEnd)(void*)) {
    pthread_key_t key = 0;
    return pthread_key_create(&key, atThreadsEnd) == 0 ? key : FLS_OUT_OF_INDEXES;
}

void* FlsGetValue(DWORD index) {
    SetLastError(ERROR_SUCCESS);
    return pthread_getspecific(index);
}

HANDLE CreateEventW(SECURITY_ATTRIBUTES*, BOOL manualReset, BOOL initialState, const wchar_t*) {
    return new Reference(new Object{manualReset != FALSE, initialState != FALSE});
}

BOOL SetEvent(HANDLE event) {
    return Set(At(event));
}

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL, DWORD milliseconds) {
    const HANDLE* const end = objects + count;
    const HANDLE* set = end;
    const auto isSet = [](HANDLE handle) { return At(handle).isSet; };
    const auto anyIsSet = [&] { return (set = std::find_if(objects, end, isSet)) != end; };
    std::unique_lock guard(g_lock);
    if (!g_changed.wait_for(guard, std::chrono::milliseconds(milliseconds), anyIsSet)) return WAIT_TIMEOUT;
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
    const DWORD newId = g_lastId += 4;
    if (id) *id = newId;
    std::thread([thread, newId, run, argument] {
        t_id = newId;
        run(argument);
        Set(*thread);
    }).detach();
    return new Reference(thread);
}

extern "C" BOOLEAN RtlDllShutdownInProgress() {
    return FALSE;
}

DWORD GetCurrentThreadId() {
    return t_id;
}

DWORD GetTickCount() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}
