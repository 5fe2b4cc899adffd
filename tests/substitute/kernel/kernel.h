#pragma once
/// Error codes and their texts, clock, named events.
#include "substitute/types.h"

/// Signed, as the system's own constants are: so comparisons with them compile on both sides.
inline constexpr LONG ERROR_SUCCESS = 0;
inline constexpr LONG NO_ERROR = 0;
inline constexpr LONG ERROR_FILE_NOT_FOUND = 2;
inline constexpr LONG ERROR_PATH_NOT_FOUND = 3;
inline constexpr LONG ERROR_ACCESS_DENIED = 5;
inline constexpr LONG ERROR_INVALID_HANDLE = 6;
inline constexpr LONG ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr LONG ERROR_INVALID_PARAMETER = 87;
inline constexpr LONG ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr LONG ERROR_INVALID_NAME = 123;
inline constexpr LONG ERROR_BAD_PATHNAME = 161;
inline constexpr LONG ERROR_ALREADY_EXISTS = 183;
inline constexpr LONG ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr LONG ERROR_MORE_DATA = 234;
inline constexpr LONG ERROR_NO_MORE_ITEMS = 259;
inline constexpr LONG ERROR_MR_MID_NOT_FOUND = 317;
inline constexpr LONG ERROR_INVALID_ADDRESS = 487;
inline constexpr LONG ERROR_NOACCESS = 998;
inline constexpr LONG ERROR_KEY_DELETED = 1018;
inline constexpr LONG ERROR_DEPENDENT_SERVICES_RUNNING = 1051;
inline constexpr LONG ERROR_INVALID_SERVICE_CONTROL = 1052;
inline constexpr LONG ERROR_SERVICE_REQUEST_TIMEOUT = 1053;
inline constexpr LONG ERROR_SERVICE_ALREADY_RUNNING = 1056;
inline constexpr LONG ERROR_SERVICE_DISABLED = 1058;
inline constexpr LONG ERROR_SERVICE_DOES_NOT_EXIST = 1060;
inline constexpr LONG ERROR_SERVICE_CANNOT_ACCEPT_CTRL = 1061;
inline constexpr LONG ERROR_SERVICE_NOT_ACTIVE = 1062;
inline constexpr LONG ERROR_SERVICE_MARKED_FOR_DELETE = 1072;

DWORD GetLastError();
void SetLastError(DWORD code);

inline constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x200;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

/// System messages only; `arguments` must be null, the language is ignored.
DWORD FormatMessageA(DWORD flags, const void* source, DWORD code, DWORD language, LPSTR buffer, DWORD size,
                     void* arguments);

DWORD GetCurrentThreadId();

/// The folder need not exist.
DWORD GetCurrentDirectoryW(DWORD capacity, LPWSTR buffer);
BOOL SetCurrentDirectoryW(LPCWSTR folder);

/// The clock is virtual: only these calls and substitute::advance_clock move it.
void Sleep(DWORD milliseconds);
std::uint64_t GetTickCount64();

inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
inline constexpr DWORD SYNCHRONIZE = 0x00100000;

struct SECURITY_ATTRIBUTES;
HANDLE CreateEventA(SECURITY_ATTRIBUTES* security, BOOL manual_reset, BOOL signalled, LPCSTR name);
HANDLE OpenEventA(DWORD access, BOOL inherit, LPCSTR name);
BOOL SetEvent(HANDLE event);
BOOL CloseHandle(HANDLE object);
/// Never waits: nothing could end it.
DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds);
