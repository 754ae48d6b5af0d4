#include <windows.h>

namespace {

thread_local DWORD t_lastError = ERROR_SUCCESS;

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
