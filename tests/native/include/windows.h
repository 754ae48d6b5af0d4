#pragma once

// The part of the system's interface that the rooms without windows and their tests use, for their native
// builds. Declared here, made in tests/native/fake_*.cpp over memory and the C library: as the system does it
// where they can tell, while arguments that all of them pass alike are not looked at. A wide character holds
// one UTF-16 unit, as there, though it is wider here. Errors are those of the system.

#include <pthread.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <shared_mutex>

#define WINAPI
#define NTAPI
#define FAILED(result) ((result) < 0)

using BOOL = int;
using BOOLEAN = unsigned char;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using LSTATUS = LONG;
using HRESULT = LONG;
using REGSAM = DWORD;
using HANDLE = void*;
using HKEY = struct HKEY__*;
using HMODULE = struct HINSTANCE__*;
using HWND = struct HWND__*;
struct SECURITY_ATTRIBUTES;
struct FILETIME;

constexpr BOOL FALSE = 0, TRUE = 1;
constexpr int MAX_PATH = 260;
// NOLINTNEXTLINE(performance-no-int-to-ptr): the system's own
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});

constexpr int ERROR_SUCCESS = 0, ERROR_FILE_NOT_FOUND = 2, ERROR_ACCESS_DENIED = 5,
              ERROR_INSUFFICIENT_BUFFER = 122, ERROR_MORE_DATA = 234, ERROR_NO_MORE_ITEMS = 259,
              ERROR_KEY_DELETED = 1018;
inline thread_local DWORD t_lastError = ERROR_SUCCESS;
inline constexpr auto GetLastError = [] { return t_lastError; };
inline constexpr auto SetLastError = [](DWORD error) { t_lastError = error; };

// --- Threads

// Both begin and end with their objects, as the system's locks without a name do.
using CRITICAL_SECTION = std::recursive_mutex;
inline constexpr auto InitializeCriticalSectionAndSpinCount = [](CRITICAL_SECTION*, DWORD) {};
inline constexpr auto DeleteCriticalSection = [](CRITICAL_SECTION*) {};
inline constexpr auto EnterCriticalSection = [](CRITICAL_SECTION* section) { section->lock(); };
inline constexpr auto LeaveCriticalSection = [](CRITICAL_SECTION* section) { section->unlock(); };

using SRWLOCK = std::shared_mutex;
inline constexpr auto InitializeSRWLock = [](SRWLOCK*) {};
inline constexpr auto AcquireSRWLockExclusive = [](SRWLOCK* lock) { lock->lock(); };
inline constexpr auto ReleaseSRWLockExclusive = [](SRWLOCK* lock) { lock->unlock(); };
inline constexpr auto AcquireSRWLockShared = [](SRWLOCK* lock) { lock->lock_shared(); };
inline constexpr auto ReleaseSRWLockShared = [](SRWLOCK* lock) { lock->unlock_shared(); };

// What ends with a thread is here every thread's value.
constexpr DWORD FLS_OUT_OF_INDEXES = 0xffffffff, TLS_OUT_OF_INDEXES = FLS_OUT_OF_INDEXES;
DWORD FlsAlloc(void (*atThreadsEnd)(void*));
inline constexpr auto FlsFree = [](DWORD index) -> BOOL { return pthread_key_delete(index) == 0; };
void* FlsGetValue(DWORD index);
inline constexpr auto FlsSetValue = [](DWORD index, void* value) -> BOOL {
    return pthread_setspecific(index, value) == 0;
};
inline constexpr auto TlsAlloc = [] { return FlsAlloc(nullptr); };
inline constexpr auto& TlsFree = FlsFree;
inline constexpr auto& TlsGetValue = FlsGetValue;
inline constexpr auto& TlsSetValue = FlsSetValue;

constexpr DWORD INFINITE = 0xffffffff, WAIT_OBJECT_0 = 0, WAIT_TIMEOUT = 258;
HANDLE CreateEventW(SECURITY_ATTRIBUTES* security, BOOL manualReset, BOOL initialState, const wchar_t* name);
BOOL SetEvent(HANDLE event);
DWORD WaitForMultipleObjects(DWORD count, const HANDLE* objects, BOOL all, DWORD milliseconds);
inline constexpr auto WaitForSingleObject = [](HANDLE object, DWORD milliseconds) {
    return WaitForMultipleObjects(1, &object, FALSE, milliseconds);
};
BOOL CloseHandle(HANDLE object);
HANDLE CreateThread(SECURITY_ATTRIBUTES*, std::size_t, DWORD (*run)(void*), void* argument, DWORD, DWORD* id);
DWORD GetCurrentThreadId();
inline constexpr auto GetCurrentProcessId = [] { return static_cast<DWORD>(getpid()); };
inline constexpr auto Sleep = [](DWORD milliseconds) { usleep(1000 * milliseconds); };
DWORD GetTickCount();

// --- Text

constexpr int CP_ACP = 0, CP_OEMCP = 1;
constexpr DWORD MB_PRECOMPOSED = 0x1, MB_ERR_INVALID_CHARS = 0x8;
inline constexpr auto GetACP = [] { return UINT{1252}; };
struct CPINFO {
    UINT MaxCharSize;
};
BOOL GetCPInfo(UINT codePage, CPINFO* info);
int MultiByteToWideChar(UINT codePage, DWORD, const char* text, int length, wchar_t* out, int capacity);
int WideCharToMultiByte(UINT, DWORD, const wchar_t* text, int length, char* out, int capacity, const char*,
                        BOOL*);

constexpr DWORD CT_CTYPE1 = 1, C1_UPPER = 0x1, C1_LOWER = 0x2, C1_ALPHA = 0x100;
BOOL GetStringTypeW(DWORD infoType, const wchar_t* text, int length, WORD* classes);

constexpr wchar_t LOCALE_NAME_INVARIANT[] = L"";
constexpr DWORD LCMAP_LOWERCASE = 0x100, LCMAP_UPPERCASE = 0x200;
int LCMapStringEx(const wchar_t* locale, DWORD mapping, const wchar_t* text, int length, wchar_t* out,
                  int capacity, void*, void*, std::intptr_t);
constexpr int CSTR_EQUAL = 2;
int CompareStringOrdinal(const wchar_t* a, int lengthOfA, const wchar_t* b, int lengthOfB, BOOL ignoreCase);

// --- Registry

extern const HKEY HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE;
constexpr REGSAM KEY_QUERY_VALUE = 0x1, KEY_SET_VALUE = 0x2, KEY_WOW64_32KEY = 0x200, KEY_READ = 0x20019,
                 KEY_ALL_ACCESS = 0xf003f;
constexpr DWORD REG_NONE = 0, REG_SZ = 1, REG_EXPAND_SZ = 2, REG_BINARY = 3, REG_DWORD = 4, REG_MULTI_SZ = 7,
                REG_QWORD = 11;
LSTATUS RegOpenKeyExW(HKEY key, const wchar_t* path, DWORD options, REGSAM access, HKEY* opened);
LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* path, DWORD, wchar_t* keyClass, DWORD, REGSAM,
                        const SECURITY_ATTRIBUTES*, HKEY* opened, DWORD* disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegDeleteTreeW(HKEY key, const wchar_t* path);
LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD*, DWORD* type, BYTE* bytes, DWORD* count);
LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD, DWORD type, const BYTE* bytes, DWORD count);
LSTATUS RegDeleteValueW(HKEY key, const wchar_t* name);
LSTATUS RegEnumKeyExW(HKEY, DWORD index, wchar_t* name, DWORD* length, DWORD*, wchar_t*, DWORD*, FILETIME*);
LSTATUS RegEnumValueW(HKEY, DWORD index, wchar_t* name, DWORD* length, DWORD*, DWORD*, BYTE*, DWORD*);

// --- Files, modules, system

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);
BOOL FindClose(HANDLE search);  // declared for the owner of searches: there is none to close

constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_PIN = 0x1, GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;
DWORD GetModuleFileNameW(HMODULE module, wchar_t* path, DWORD capacity);
extern "C" BOOLEAN RtlDllShutdownInProgress();
BOOL GetModuleHandleExW(DWORD flags, const wchar_t* nameOrAddress, HMODULE* module);

DWORD GetCurrentDirectoryW(DWORD capacity, wchar_t* directory);
BOOL SetEnvironmentVariableW(const wchar_t* name, const wchar_t* value);
DWORD ExpandEnvironmentStringsW(const wchar_t* text, wchar_t* out, DWORD capacity);

constexpr DWORD VER_PLATFORM_WIN32_NT = 2;
struct OSVERSIONINFOW {
    DWORD dwOSVersionInfoSize, dwMajorVersion, dwMinorVersion, dwBuildNumber, dwPlatformId;
    wchar_t szCSDVersion[128];
};
BOOL GetVersionExW(OSVERSIONINFOW* version);

struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay;
};
void GetLocalTime(SYSTEMTIME* now);

constexpr UINT MB_OK = 0, MB_ICONERROR = 0x10, MB_TASKMODAL = 0x2000;
int MessageBoxW(HWND owner, const wchar_t* text, const wchar_t* title, UINT type);
