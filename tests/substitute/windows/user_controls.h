#pragma once
/// Styles, messages and notifications of "Button", "Static", "Edit" and "ComboBox".
#include "substitute/types.h"

inline constexpr DWORD BS_PUSHBUTTON = 0x0;
inline constexpr DWORD BS_AUTOCHECKBOX = 0x3;
inline constexpr DWORD BS_GROUPBOX = 0x7;
inline constexpr DWORD BS_TYPEMASK = 0xF;
inline constexpr UINT BM_GETCHECK = 0x00F0;
inline constexpr UINT BM_SETCHECK = 0x00F1;
inline constexpr UINT BM_CLICK = 0x00F5;
inline constexpr WPARAM BST_UNCHECKED = 0;
inline constexpr WPARAM BST_CHECKED = 1;
inline constexpr WORD BN_CLICKED = 0;

inline constexpr DWORD SS_LEFT = 0x0;

inline constexpr DWORD ES_CENTER = 0x0001;
inline constexpr DWORD ES_MULTILINE = 0x0004;
inline constexpr DWORD ES_AUTOHSCROLL = 0x0080;
inline constexpr DWORD ES_READONLY = 0x0800;
inline constexpr DWORD ES_NUMBER = 0x2000;
inline constexpr UINT EM_SETSEL = 0x00B1;
inline constexpr UINT EM_GETLINECOUNT = 0x00BA;
inline constexpr WORD EN_SETFOCUS = 0x0100;
inline constexpr WORD EN_KILLFOCUS = 0x0200;
inline constexpr WORD EN_CHANGE = 0x0300;
inline constexpr WORD EN_UPDATE = 0x0400;

inline constexpr DWORD CBS_DROPDOWNLIST = 0x0003;
inline constexpr DWORD CBS_SORT = 0x0100;
inline constexpr int CB_ERR = -1;
inline constexpr UINT CB_ADDSTRING = 0x0143;
inline constexpr UINT CB_GETCOUNT = 0x0146;
inline constexpr UINT CB_GETCURSEL = 0x0147;
inline constexpr UINT CB_GETLBTEXT = 0x0148;
inline constexpr UINT CB_GETLBTEXTLEN = 0x0149;
inline constexpr UINT CB_SETCURSEL = 0x014E;
inline constexpr UINT CB_GETITEMHEIGHT = 0x0154;
inline constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
inline constexpr UINT CB_SETMINVISIBLE = 0x1701;
inline constexpr UINT CB_GETMINVISIBLE = 0x1702;
inline constexpr WORD CBN_SELCHANGE = 1;
inline constexpr WORD CBN_SETFOCUS = 3;
inline constexpr WORD CBN_KILLFOCUS = 4;
inline constexpr WORD CBN_DROPDOWN = 7;
inline constexpr WORD CBN_CLOSEUP = 8;
inline constexpr WORD CBN_SELENDOK = 9;
inline constexpr WORD CBN_SELENDCANCEL = 10;
