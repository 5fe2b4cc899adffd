#pragma once
/// Styles, messages, records and notifications of "SysTreeView32".
#include "substitute/windows/user_types.h"

inline constexpr const char* WC_TREEVIEWA = "SysTreeView32";

inline constexpr DWORD TVS_HASBUTTONS = 0x01;
inline constexpr DWORD TVS_HASLINES = 0x02;
inline constexpr DWORD TVS_LINESATROOT = 0x04;
inline constexpr DWORD TVS_SHOWSELALWAYS = 0x20;

inline constexpr UINT TVM_INSERTITEMA = 0x1100;
inline constexpr UINT TVM_EXPAND = 0x1102;
inline constexpr UINT TVM_GETITEMRECT = 0x1104;
inline constexpr UINT TVM_GETNEXTITEM = 0x110A;
inline constexpr UINT TVM_SELECTITEM = 0x110B;
inline constexpr UINT TVM_GETITEMA = 0x110C;

inline const HTREEITEM TVI_ROOT = reinterpret_cast<HTREEITEM>(static_cast<LONG_PTR>(-0x10000));
inline const HTREEITEM TVI_FIRST = reinterpret_cast<HTREEITEM>(static_cast<LONG_PTR>(-0x0FFFF));
inline const HTREEITEM TVI_LAST = reinterpret_cast<HTREEITEM>(static_cast<LONG_PTR>(-0x0FFFE));

inline constexpr UINT TVIF_TEXT = 0x0001;
inline constexpr UINT TVIF_PARAM = 0x0004;
inline constexpr UINT TVIF_STATE = 0x0008;
inline constexpr UINT TVIF_HANDLE = 0x0010;
inline constexpr UINT TVIS_SELECTED = 0x0002;
inline constexpr UINT TVIS_EXPANDED = 0x0020;

inline constexpr WPARAM TVE_COLLAPSE = 1;
inline constexpr WPARAM TVE_EXPAND = 2;

inline constexpr WPARAM TVGN_ROOT = 0;
inline constexpr WPARAM TVGN_NEXT = 1;
inline constexpr WPARAM TVGN_CHILD = 4;
inline constexpr WPARAM TVGN_NEXTVISIBLE = 6;
inline constexpr WPARAM TVGN_CARET = 9;

struct TVITEMA {
    UINT mask;
    HTREEITEM hItem;
    UINT state;
    UINT stateMask;
    LPSTR pszText;
    int cchTextMax;
    int iImage;
    int iSelectedImage;
    int cChildren;
    LPARAM lParam;
};

struct TVINSERTSTRUCTA {
    HTREEITEM hParent;
    HTREEITEM hInsertAfter;
    TVITEMA item;
};

struct NMTREEVIEWA {
    NMHDR hdr;
    UINT action;
    TVITEMA itemOld;
    TVITEMA itemNew;
    POINT ptDrag;
};
using LPNMTREEVIEWA = NMTREEVIEWA*;

inline constexpr UINT TVC_UNKNOWN = 0;
inline constexpr UINT TVC_BYMOUSE = 1;
inline constexpr UINT TVC_BYKEYBOARD = 2;

inline constexpr UINT NM_CLICK = static_cast<UINT>(-2);
inline constexpr UINT NM_SETFOCUS = static_cast<UINT>(-7);
inline constexpr UINT NM_KILLFOCUS = static_cast<UINT>(-8);
inline constexpr UINT TVN_SELCHANGINGA = static_cast<UINT>(-401);
inline constexpr UINT TVN_SELCHANGEDA = static_cast<UINT>(-402);
inline constexpr UINT TVN_ITEMEXPANDINGA = static_cast<UINT>(-405);
inline constexpr UINT TVN_ITEMEXPANDEDA = static_cast<UINT>(-406);
inline constexpr UINT TVN_DELETEITEMA = static_cast<UINT>(-409);
inline constexpr UINT TVN_KEYDOWN = static_cast<UINT>(-412);

struct NMTVKEYDOWN {
    NMHDR hdr;
    WORD wVKey;
    UINT flags;
};
