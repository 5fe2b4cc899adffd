#pragma once
/// The basic Windows types, with the widths that they have on 64-bit Windows.
#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using BOOL = int;
using HRESULT = LONG;
using LSTATUS = LONG;
using INT_PTR = std::intptr_t;
using LONG_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using ATOM = WORD;
using LPSTR = char*;
using LPCSTR = const char*;
using WCHAR = wchar_t;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using LPVOID = void*;
using LPBYTE = BYTE*;
using LPDWORD = DWORD*;
using HANDLE = void*;

// NOLINTBEGIN(bugprone-macro-parentheses): the argument names a type
#define SUBSTITUTE_HANDLE(name)                                                                              \
    struct name##__;                                                                                         \
    using name = name##__*
// NOLINTEND(bugprone-macro-parentheses)
SUBSTITUTE_HANDLE(HWND);
SUBSTITUTE_HANDLE(HINSTANCE);
SUBSTITUTE_HANDLE(HMENU);
SUBSTITUTE_HANDLE(HICON);
SUBSTITUTE_HANDLE(HCURSOR);
SUBSTITUTE_HANDLE(HBRUSH);
SUBSTITUTE_HANDLE(HDC);
SUBSTITUTE_HANDLE(HKEY);
SUBSTITUTE_HANDLE(HTREEITEM);
SUBSTITUTE_HANDLE(SC_HANDLE);
#undef SUBSTITUTE_HANDLE
using HMODULE = HINSTANCE;
using HGDIOBJ = void*;
using HFONT = HGDIOBJ;

#define WINAPI
#define CALLBACK
#define TRUE 1
#define FALSE 0

inline constexpr int MAX_PATH = 260;

constexpr WORD LOWORD(ULONG_PTR value) { return static_cast<WORD>(value & 0xFFFF); }
constexpr WORD HIWORD(ULONG_PTR value) { return static_cast<WORD>((value >> 16) & 0xFFFF); }
constexpr LONG MAKELONG(int low, int high) {
    return static_cast<LONG>(static_cast<DWORD>(low & 0xFFFF) | (static_cast<DWORD>(high & 0xFFFF) << 16));
}
constexpr WPARAM MAKEWPARAM(int low, int high) { return static_cast<DWORD>(MAKELONG(low, high)); }
constexpr LPARAM MAKELPARAM(int low, int high) {
    return static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
