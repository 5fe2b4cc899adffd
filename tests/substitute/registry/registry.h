#pragma once
/// The registry. Only 64-bit programs are built, so both views of it are the same one.
#include "substitute/types.h"

using REGSAM = DWORD;
struct SECURITY_ATTRIBUTES;
struct FILETIME;

inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::intptr_t{-0x80000000LL});
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::intptr_t{-0x7FFFFFFFLL});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::intptr_t{-0x7FFFFFFELL});
inline const HKEY HKEY_USERS = reinterpret_cast<HKEY>(std::intptr_t{-0x7FFFFFFDLL});

inline constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
inline constexpr REGSAM KEY_SET_VALUE = 0x0002;
inline constexpr REGSAM KEY_NOTIFY = 0x0010;
inline constexpr REGSAM KEY_WOW64_64KEY = 0x0100;
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_LINK = 6;
inline constexpr DWORD REG_MULTI_SZ = 7;
inline constexpr DWORD REG_QWORD = 11;

inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;

LSTATUS RegOpenKeyExA(HKEY parent, LPCSTR path, DWORD options, REGSAM access, HKEY* result);
LSTATUS RegCreateKeyExA(HKEY parent, LPCSTR path, DWORD reserved, LPSTR class_name, DWORD options,
                        REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* result, LPDWORD disposition);
LSTATUS RegCloseKey(HKEY key);
LSTATUS RegDeleteKeyA(HKEY parent, LPCSTR path);
LSTATUS RegDeleteTreeA(HKEY parent, LPCSTR path);

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size);
LSTATUS RegDeleteValueA(HKEY key, LPCSTR name);

LSTATUS RegQueryInfoKeyA(HKEY key, LPSTR class_name, LPDWORD class_size, LPDWORD reserved, LPDWORD subkeys,
                         LPDWORD longest_subkey, LPDWORD longest_class, LPDWORD values,
                         LPDWORD longest_value_name, LPDWORD longest_data, LPDWORD security,
                         FILETIME* written);
LSTATUS RegEnumValueA(HKEY key, DWORD index, LPSTR name, LPDWORD name_size, LPDWORD reserved, LPDWORD type,
                      LPBYTE data, LPDWORD size);
