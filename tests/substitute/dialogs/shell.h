#pragma once
/// The shell's folder browser, the common open-file dialog, and what start-up calls of COM and the common
/// controls.
#include "substitute/types.h"

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;

void InitCommonControls();
HRESULT CoInitialize(LPVOID reserved);
void CoUninitialize();
void CoTaskMemFree(LPVOID memory);

/// A place in the shell's tree of folders, opaque to the program.
struct ITEMIDLIST {
    WORD size;
    BYTE rest[1];
};
using LPITEMIDLIST = ITEMIDLIST*;
using PIDLIST_ABSOLUTE = ITEMIDLIST*;
using LPCITEMIDLIST = const ITEMIDLIST*;
using PCIDLIST_ABSOLUTE = const ITEMIDLIST*;

using BFFCALLBACK = int (*)(HWND, UINT, LPARAM, LPARAM);

struct BROWSEINFOA {
    HWND hwndOwner;
    PCIDLIST_ABSOLUTE pidlRoot;
    LPSTR pszDisplayName;
    LPCSTR lpszTitle;
    UINT ulFlags;
    BFFCALLBACK lpfn;
    LPARAM lParam;
    int iImage;
};
using LPBROWSEINFOA = BROWSEINFOA*;

inline constexpr UINT BIF_RETURNONLYFSDIRS = 0x0001;
inline constexpr UINT BIF_NEWDIALOGSTYLE = 0x0040;
inline constexpr UINT BFFM_INITIALIZED = 1;
inline constexpr UINT BFFM_SELCHANGED = 2;
inline constexpr UINT BFFM_ENABLEOK = 0x0465;
inline constexpr UINT BFFM_SETSELECTIONA = 0x0466;

PIDLIST_ABSOLUTE SHBrowseForFolderA(LPBROWSEINFOA details);
BOOL SHGetPathFromIDListA(PCIDLIST_ABSOLUTE place, LPSTR path);

using LPOFNHOOKPROC = UINT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

struct OPENFILENAMEA {
    DWORD lStructSize;
    HWND hwndOwner;
    HINSTANCE hInstance;
    LPCSTR lpstrFilter;
    LPSTR lpstrCustomFilter;
    DWORD nMaxCustFilter;
    DWORD nFilterIndex;
    LPSTR lpstrFile;
    DWORD nMaxFile;
    LPSTR lpstrFileTitle;
    DWORD nMaxFileTitle;
    LPCSTR lpstrInitialDir;
    LPCSTR lpstrTitle;
    DWORD Flags;
    WORD nFileOffset;
    WORD nFileExtension;
    LPCSTR lpstrDefExt;
    LPARAM lCustData;
    LPOFNHOOKPROC lpfnHook;
    LPCSTR lpTemplateName;
    void* pvReserved;
    DWORD dwReserved;
    DWORD FlagsEx;
};
using LPOPENFILENAMEA = OPENFILENAMEA*;
static_assert(sizeof(OPENFILENAMEA) == 152, "as on 64-bit Windows");

inline constexpr DWORD OFN_HIDEREADONLY = 0x00000004;
inline constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;
inline constexpr DWORD OFN_SHAREAWARE = 0x00004000;
inline constexpr DWORD OFN_EXPLORER = 0x00080000;
inline constexpr DWORD OFN_NODEREFERENCELINKS = 0x00100000;

inline constexpr LONG CDERR_STRUCTSIZE = 0x0001;
inline constexpr LONG CDERR_INITIALIZATION = 0x0002;
inline constexpr LONG FNERR_INVALIDFILENAME = 0x3002;
inline constexpr LONG FNERR_BUFFERTOOSMALL = 0x3003;

BOOL GetOpenFileNameA(LPOPENFILENAMEA details);
DWORD CommDlgExtendedError();
