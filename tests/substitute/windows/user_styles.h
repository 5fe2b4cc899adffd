#pragma once
/// Styles of windows, how they are shown and placed, message boxes, stock objects.
#include "substitute/types.h"

inline constexpr DWORD WS_OVERLAPPED = 0x00000000;
inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_MINIMIZE = 0x20000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
inline constexpr DWORD WS_BORDER = 0x00800000;
inline constexpr DWORD WS_DLGFRAME = 0x00400000;
inline constexpr DWORD WS_CAPTION = WS_BORDER | WS_DLGFRAME;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_THICKFRAME = 0x00040000;
inline constexpr DWORD WS_GROUP = 0x00020000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
inline constexpr DWORD WS_OVERLAPPEDWINDOW =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
inline constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
inline constexpr DWORD WS_EX_WINDOWEDGE = 0x00000100;
inline constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;

inline constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000U);

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNORMAL = 1;
inline constexpr int SW_SHOWNOACTIVATE = 4;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_MINIMIZE = 6;
inline constexpr int SW_SHOWNA = 8;
inline constexpr int SW_RESTORE = 9;

inline constexpr UINT SWP_NOSIZE = 0x0001;
inline constexpr UINT SWP_NOMOVE = 0x0002;
inline constexpr UINT SWP_NOZORDER = 0x0004;
inline constexpr UINT SWP_NOACTIVATE = 0x0010;
inline constexpr UINT SWP_SHOWWINDOW = 0x0040;
inline constexpr UINT SWP_HIDEWINDOW = 0x0080;

inline constexpr int GWL_STYLE = -16;
inline constexpr int GWL_EXSTYLE = -20;
inline constexpr int GWLP_WNDPROC = -4;
inline constexpr int GWLP_USERDATA = -21;

inline constexpr UINT GW_HWNDFIRST = 0;
inline constexpr UINT GW_HWNDNEXT = 2;
inline constexpr UINT GW_OWNER = 4;
inline constexpr UINT GW_CHILD = 5;

inline constexpr UINT PM_NOREMOVE = 0;
inline constexpr UINT PM_REMOVE = 1;

inline constexpr UINT MB_OK = 0x00;
inline constexpr UINT MB_OKCANCEL = 0x01;
inline constexpr UINT MB_YESNOCANCEL = 0x03;
inline constexpr UINT MB_YESNO = 0x04;
inline constexpr UINT MB_TYPEMASK = 0x0F;
inline constexpr UINT MB_ICONERROR = 0x10;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;
inline constexpr UINT MB_ICONINFORMATION = 0x40;
inline constexpr UINT MB_ICONMASK = 0xF0;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr DWORD CLR_INVALID = 0xFFFFFFFF;
inline constexpr UINT IMAGE_ICON = 1;
inline constexpr UINT LR_DEFAULTCOLOR = 0;
inline constexpr int SM_CXSMICON = 49;
inline constexpr int SM_CYSMICON = 50;
inline constexpr int DEFAULT_GUI_FONT = 17;
/// Numbered resources are named by a pointer whose value is the number.
inline const LPCSTR IDC_ARROW = reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(32512));
