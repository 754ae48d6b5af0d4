#pragma once

// The part of the system's interface that the rooms without windows use, for their native builds. Declared
// here, made in tests/native/fake_*.cpp: real enough that a caller cannot tell, over memory and the C
// library. A wide character holds one UTF-16 unit, as there, though it is wider here. Errors are those of the
// system.

#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

#define WINAPI
#define CALLBACK
#define TRUE 1
#define FALSE 0
#define MAX_PATH 260

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using LSTATUS = LONG;
using HRESULT = std::int32_t;
using LCID = DWORD;
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
#define ERROR_INVALID_HANDLE 6
#define ERROR_NOT_ENOUGH_MEMORY 8
#define ERROR_INVALID_PARAMETER 87
#define ERROR_INSUFFICIENT_BUFFER 122
#define ERROR_BAD_PATHNAME 161
#define ERROR_ENVVAR_NOT_FOUND 203
#define ERROR_MORE_DATA 234
#define ERROR_NO_MORE_ITEMS 259
#define ERROR_INVALID_FLAGS 1004
#define ERROR_KEY_DELETED 1018
#define ERROR_NO_UNICODE_TRANSLATION 1113
#define FAILED(result) ((result) < 0)
#define SUCCEEDED(result) ((result) >= 0)

DWORD GetLastError();
void SetLastError(DWORD error);

// --- Threads

struct CRITICAL_SECTION {
    pthread_mutex_t mutex;
};
BOOL InitializeCriticalSectionAndSpinCount(CRITICAL_SECTION* section, DWORD spins);
void EnterCriticalSection(CRITICAL_SECTION* section);
void LeaveCriticalSection(CRITICAL_SECTION* section);
void DeleteCriticalSection(CRITICAL_SECTION* section);

struct SRWLOCK {
    pthread_rwlock_t lock;
};
void InitializeSRWLock(SRWLOCK* lock);
void AcquireSRWLockExclusive(SRWLOCK* lock);
void ReleaseSRWLockExclusive(SRWLOCK* lock);
void AcquireSRWLockShared(SRWLOCK* lock);
void ReleaseSRWLockShared(SRWLOCK* lock);

#define TLS_OUT_OF_INDEXES 0xffffffffu
DWORD TlsAlloc();
BOOL TlsFree(DWORD index);
void* TlsGetValue(DWORD index);
BOOL TlsSetValue(DWORD index, void* value);

#define INFINITE 0xffffffffu
#define WAIT_OBJECT_0 0u
#define WAIT_TIMEOUT 258u
#define WAIT_FAILED 0xffffffffu
#define MAXIMUM_WAIT_OBJECTS 64u
HANDLE CreateEventW(SECURITY_ATTRIBUTES* security, BOOL manualReset, BOOL initialState, const wchar_t* name);
BOOL SetEvent(HANDLE event);
BOOL ResetEvent(HANDLE event);
DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds);
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all, DWORD milliseconds);
BOOL CloseHandle(HANDLE object);

// Stack size and flags are not looked at.
HANDLE CreateThread(SECURITY_ATTRIBUTES* security, std::size_t stackSize, DWORD (*run)(void*), void* argument,
                    DWORD flags, DWORD* id);
DWORD GetCurrentThreadId();
void Sleep(DWORD milliseconds);
DWORD GetTickCount();

// --- Text

#define CP_ACP 0
#define CP_UTF8 65001
#define MB_PRECOMPOSED 0x1
#define MB_ERR_INVALID_CHARS 0x8
#define WC_ERR_INVALID_CHARS 0x80
#define WC_NO_BEST_FIT_CHARS 0x400
UINT GetACP();
BOOL IsDBCSLeadByte(BYTE byte);

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
#define C1_DIGIT 0x4
#define C1_SPACE 0x8
#define C1_PUNCT 0x10
#define C1_CNTRL 0x20
#define C1_BLANK 0x40
#define C1_XDIGIT 0x80
#define C1_ALPHA 0x100
BOOL GetStringTypeW(DWORD infoType, const wchar_t* text, int length, WORD* classes);

#define LOCALE_NAME_INVARIANT L""
#define LOCALE_INVARIANT 0x7f
#define LCMAP_LOWERCASE 0x100
#define LCMAP_UPPERCASE 0x200
int LCMapStringEx(const wchar_t* locale, DWORD mapping, const wchar_t* text, int length, wchar_t* out,
                  int capacity, void* version, void* reserved, std::intptr_t sortHandle);
int LCMapStringW(LCID locale, DWORD mapping, const wchar_t* text, int length, wchar_t* out, int capacity);

#define CSTR_LESS_THAN 1
#define CSTR_EQUAL 2
#define CSTR_GREATER_THAN 3
int CompareStringOrdinal(const wchar_t* a, int lengthOfA, const wchar_t* b, int lengthOfB, BOOL ignoreCase);

// --- Registry

HKEY FakeRootKey(bool machine);
#define HKEY_CURRENT_USER FakeRootKey(false)
#define HKEY_LOCAL_MACHINE FakeRootKey(true)
#define KEY_QUERY_VALUE 0x1
#define KEY_SET_VALUE 0x2
#define KEY_CREATE_SUB_KEY 0x4
#define KEY_ENUMERATE_SUB_KEYS 0x8
#define KEY_READ 0x20019
#define KEY_WRITE 0x20006
#define KEY_ALL_ACCESS 0xf003f
#define REG_NONE 0
#define REG_SZ 1
#define REG_EXPAND_SZ 2
#define REG_BINARY 3
#define REG_DWORD 4
#define REG_MULTI_SZ 7
#define REG_QWORD 11
#define REG_OPTION_NON_VOLATILE 0
#define REG_CREATED_NEW_KEY 1
#define REG_OPENED_EXISTING_KEY 2
struct FILETIME;
LSTATUS RegOpenKeyExW(HKEY key, const wchar_t* path, DWORD options, REGSAM access, HKEY* opened);
LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                        REGSAM access, const SECURITY_ATTRIBUTES* security, HKEY* opened, DWORD* disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegDeleteKeyW(HKEY key, const wchar_t* path);
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
LSTATUS RegQueryInfoKeyW(HKEY key, wchar_t* keyClass, DWORD* classLength, DWORD* reserved, DWORD* subkeys,
                         DWORD* longestSubkey, DWORD* longestClass, DWORD* values, DWORD* longestName,
                         DWORD* longestValue, DWORD* descriptor, FILETIME* lastWrite);

// --- Files, modules, system

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);
BOOL FindClose(HANDLE search);  // there is no search to close

#define GET_MODULE_HANDLE_EX_FLAG_PIN 0x1
#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x2
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x4
DWORD GetModuleFileNameW(HMODULE module, wchar_t* path, DWORD capacity);
BOOL GetModuleHandleExW(DWORD flags, const wchar_t* nameOrAddress, HMODULE* module);

DWORD GetCurrentDirectoryW(DWORD capacity, wchar_t* directory);
DWORD GetEnvironmentVariableW(const wchar_t* name, wchar_t* value, DWORD capacity);
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
#define IDOK 1
int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* title, UINT type);
