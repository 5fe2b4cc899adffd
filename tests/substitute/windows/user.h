#pragma once
/// Windows, messages, focus, message boxes and the few drawing calls, as user32 and gdi32 have them.
#include "substitute/windows/user_controls.h"
#include "substitute/windows/user_errors.h"
#include "substitute/windows/user_messages.h"
#include "substitute/windows/user_styles.h"
#include "substitute/windows/user_tree.h"
#include "substitute/windows/user_types.h"

ATOM RegisterClassExA(const WNDCLASSEXA* details);
BOOL UnregisterClassA(LPCSTR name, HINSTANCE instance);
BOOL GetClassInfoExA(HINSTANCE instance, LPCSTR name, WNDCLASSEXA* details);
HMODULE GetModuleHandleA(LPCSTR name);
HICON LoadIconA(HINSTANCE instance, LPCSTR name);
HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name);
HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT kind, int width, int height, UINT flags);
int GetSystemMetrics(int measure);
void DisableProcessWindowsGhosting();

HWND CreateWindowExA(DWORD extended_style, LPCSTR class_name, LPCSTR title, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter);
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);
LONG_PTR GetWindowLongPtrA(HWND window, int index);
LONG_PTR SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

HWND GetParent(HWND window);
HWND GetWindow(HWND window, UINT relation);
HWND GetDlgItem(HWND parent, int id);
int GetDlgCtrlID(HWND window);
BOOL IsChild(HWND parent, HWND window);
HWND FindWindowA(LPCSTR class_name, LPCSTR title);
int GetClassNameA(HWND window, LPSTR buffer, int capacity);

BOOL SetWindowTextA(HWND window, LPCSTR text);
int GetWindowTextA(HWND window, LPSTR buffer, int capacity);
int GetWindowTextLengthA(HWND window);

BOOL SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL GetClientRect(HWND window, LPRECT rectangle);
BOOL GetWindowRect(HWND window, LPRECT rectangle);
int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);

BOOL ShowWindow(HWND window, int command);
BOOL UpdateWindow(HWND window);
BOOL IsWindowVisible(HWND window);
BOOL EnableWindow(HWND window, BOOL enable);
BOOL IsWindowEnabled(HWND window);

HWND SetFocus(HWND window);
HWND GetFocus();
HWND GetActiveWindow();
short GetKeyState(int key);

LRESULT SendMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL PostMessageA(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam);
void PostQuitMessage(int exit_code);
BOOL GetMessageA(LPMSG message, HWND window, UINT first, UINT last);
BOOL PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
BOOL TranslateMessage(const MSG* message);
LRESULT DispatchMessageA(const MSG* message);
BOOL IsDialogMessageA(HWND dialog, LPMSG message);

using HOOKPROC = LRESULT (*)(int, WPARAM, LPARAM);
struct HHOOK__;
using HHOOK = HHOOK__*;
inline constexpr int WH_MSGFILTER = -1;
inline constexpr int MSGF_DIALOGBOX = 0;
/// Of the kinds of hooks only WH_MSGFILTER, of the program's one thread.
HHOOK SetWindowsHookExA(int kind, HOOKPROC procedure, HINSTANCE module, DWORD thread);
BOOL UnhookWindowsHookEx(HHOOK hook);
LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wparam, LPARAM lparam);

BOOL ShutdownBlockReasonCreate(HWND window, LPCWSTR reason);
BOOL ShutdownBlockReasonDestroy(HWND window);

int MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style);

HGDIOBJ GetStockObject(int object);
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC context);
HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
BOOL GetTextMetricsA(HDC context, LPTEXTMETRICA metrics);
int FillRect(HDC context, const RECT* rectangle, HBRUSH brush);
COLORREF GetPixel(HDC context, int x, int y);
DWORD GetSysColor(int colour);
