#pragma once

// The part of the system's interface that the rooms without windows and their tests use, for their native
// builds. Declared here, made in tests/native/fake_*.cpp over memory and the C library: as the system does it
// where they can tell, while arguments that all of them pass alike are not looked at. A wide character holds
// one UTF-16 unit, as there, though it is wider here. Errors are those of the system.

#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <shared_mutex>

#define WINAPI
#define CALLBACK
#define NTAPI
#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

using BOOL = int;
using BOOLEAN = unsigned char;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using LSTATUS = LONG;
using HRESULT = std::int32_t;
using REGSAM = DWORD;
using WCHAR = wchar_t;
using HANDLE = void*;
using HKEY = struct HKEY__*;
using HMODULE = struct HINSTANCE__*;
using HINSTANCE = HMODULE;
using HWND = struct HWND__*;
inline HANDLE FakeInvalidHandle() {
    return reinterpret_cast<HANDLE>(
        std::intptr_t{-1});  // NOLINT(performance-no-int-to-ptr): the system's own
}
#define INVALID_HANDLE_VALUE FakeInvalidHandle()
struct SECURITY_ATTRIBUTES;

// --- Errors

#define ERROR_SUCCESS 0
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_ACCESS_DENIED 5
#define ERROR_INSUFFICIENT_BUFFER 122
#define ERROR_MORE_DATA 234
#define ERROR_NO_MORE_ITEMS 259
#define ERROR_KEY_DELETED 1018
#define FAILED(result) ((result) < 0)

DWORD GetLastError();
void SetLastError(DWORD error);

// --- Threads

// Both begin and end with their objects, as the system's locks without a name do.
using CRITICAL_SECTION = std::recursive_mutex;
inline void InitializeCriticalSectionAndSpinCount(CRITICAL_SECTION*, DWORD) {}
inline void DeleteCriticalSection(CRITICAL_SECTION*) {}
inline void EnterCriticalSection(CRITICAL_SECTION* section) {
    section->lock();
}
inline void LeaveCriticalSection(CRITICAL_SECTION* section) {
    section->unlock();
}

using SRWLOCK = std::shared_mutex;
inline void InitializeSRWLock(SRWLOCK*) {}
inline void AcquireSRWLockExclusive(SRWLOCK* lock) {
    lock->lock();
}
inline void ReleaseSRWLockExclusive(SRWLOCK* lock) {
    lock->unlock();
}
inline void AcquireSRWLockShared(SRWLOCK* lock) {
    lock->lock_shared();
}
inline void ReleaseSRWLockShared(SRWLOCK* lock) {
    lock->unlock_shared();
}

#define TLS_OUT_OF_INDEXES 0xffffffffu
DWORD TlsAlloc();
BOOL TlsFree(DWORD index);
void* TlsGetValue(DWORD index);
BOOL TlsSetValue(DWORD index, void* value);

#define FLS_OUT_OF_INDEXES 0xffffffffu
DWORD FlsAlloc(void (*atThreadsEnd)(void*));
BOOL FlsFree(DWORD index);
void* FlsGetValue(DWORD index);
BOOL FlsSetValue(DWORD index, void* value);

#define INFINITE 0xffffffffu
#define WAIT_OBJECT_0 0u
#define WAIT_TIMEOUT 258u
HANDLE CreateEventW(SECURITY_ATTRIBUTES* security, BOOL manualReset, BOOL initialState, const wchar_t* name);
BOOL SetEvent(HANDLE event);
DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds);
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all, DWORD milliseconds);
BOOL CloseHandle(HANDLE object);

HANDLE CreateThread(SECURITY_ATTRIBUTES* security, std::size_t stackSize, DWORD (*run)(void*), void* argument,
                    DWORD flags, DWORD* id);
DWORD GetCurrentThreadId();
DWORD GetCurrentProcessId();
void Sleep(DWORD milliseconds);
DWORD GetTickCount();

// --- Text

#define CP_ACP 0
#define CP_OEMCP 1
#define MB_PRECOMPOSED 0x1
#define MB_ERR_INVALID_CHARS 0x8
#define WC_NO_BEST_FIT_CHARS 0x400
UINT GetACP();

struct CPINFO {
    UINT MaxCharSize;
    BYTE DefaultChar[2];
    BYTE LeadByte[12];
};
BOOL GetCPInfo(UINT codePage, CPINFO* info);
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length, wchar_t* out, int capacity);
int WideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int length, char* out, int capacity,
                        const char* defaultChar, BOOL* usedDefault);

#define CT_CTYPE1 1
#define C1_UPPER 0x1
#define C1_LOWER 0x2
#define C1_ALPHA 0x100
BOOL GetStringTypeW(DWORD infoType, const wchar_t* text, int length, WORD* classes);

#define LOCALE_NAME_INVARIANT L""
#define LCMAP_LOWERCASE 0x100
#define LCMAP_UPPERCASE 0x200
int LCMapStringEx(const wchar_t* locale, DWORD mapping, const wchar_t* text, int length, wchar_t* out,
                  int capacity, void* version, void* reserved, std::intptr_t sortHandle);

#define CSTR_EQUAL 2
int CompareStringOrdinal(const wchar_t* a, int lengthOfA, const wchar_t* b, int lengthOfB, BOOL ignoreCase);

// --- Registry

HKEY FakeRootKey(bool machine);
#define HKEY_CURRENT_USER FakeRootKey(false)
#define HKEY_LOCAL_MACHINE FakeRootKey(true)
#define KEY_QUERY_VALUE 0x1
#define KEY_SET_VALUE 0x2
#define KEY_WOW64_32KEY 0x200
#define KEY_READ 0x20019
#define KEY_ALL_ACCESS 0xf003f
#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7
#define REG_QWORD 11
struct FILETIME;
LSTATUS RegOpenKeyExW(HKEY key, const wchar_t* path, DWORD options, REGSAM access, HKEY* opened);
LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                        REGSAM access, const SECURITY_ATTRIBUTES* security, HKEY* opened, DWORD* disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegDeleteTreeW(HKEY key, const wchar_t* path);
LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* bytes,
                         DWORD* count);
LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* bytes,
                       DWORD count);
LSTATUS RegDeleteValueW(HKEY key, const wchar_t* name);
LSTATUS RegEnumKeyExW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, wchar_t* keyClass,
                      DWORD* classLength, FILETIME* lastWrite);
LSTATUS RegEnumValueW(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, DWORD* type,
                      BYTE* bytes, DWORD* count);

// --- Files, modules, system

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);
BOOL FindClose(HANDLE search);  // declared for the owner of searches: there is none to close

#define GET_MODULE_HANDLE_EX_FLAG_PIN 0x1
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x4
DWORD GetModuleFileNameW(HMODULE module, wchar_t* path, DWORD capacity);
extern "C" BOOLEAN RtlDllShutdownInProgress();
BOOL GetModuleHandleExW(DWORD flags, const wchar_t* nameOrAddress, HMODULE* module);

DWORD GetCurrentDirectoryW(DWORD capacity, wchar_t* directory);
BOOL SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value);
DWORD ExpandEnvironmentStringsW(const wchar_t* text, wchar_t* out, DWORD capacity);

#define VER_PLATFORM_WIN32_NT 2
struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    wchar_t szCSDVersion[128];
};
BOOL GetVersionExW(OSVERSIONINFOW* version);

struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};
void GetLocalTime(SYSTEMTIME* now);

#define MB_OK 0
#define MB_ICONERROR 0x10
#define MB_TASKMODAL 0x2000
int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* title, UINT type);
