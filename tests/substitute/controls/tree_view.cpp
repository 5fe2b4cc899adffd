#include "substitute/controls/tree_view.h"
#include "substitute/controls/controls.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>
#include <cstring>

/// "SysTreeView32".
namespace substitute {
namespace {

LRESULT create(HWND handle) {
    existing_window(handle).control = std::make_unique<TreeData>();
    return 0;
}

UINT state_of(const TreeData& data, HTREEITEM handle) {
    const UINT selected = handle == data.selected ? TVIS_SELECTED : 0;
    return selected | (data.items.find(handle)->expanded ? TVIS_EXPANDED : 0);
}

TVITEMA described(const TreeData& data, HTREEITEM handle) {
    TVITEMA result{};
    result.mask = TVIF_HANDLE | TVIF_STATE | TVIF_PARAM;
    result.hItem = handle;
    if (const TreeItem* item = data.items.find(handle)) {
        result.state = state_of(data, handle);
        result.lParam = item->parameter;
    }
    return result;
}

LRESULT notify_items(HWND handle, UINT code, UINT action, HTREEITEM before, HTREEITEM after) {
    const TreeData& data = tree_data(handle);
    NMTREEVIEWA record{};
    record.action = action;
    record.itemOld = described(data, before);
    record.itemNew = described(data, after);
    return notify_parent_of_tree(handle, record.hdr, code);
}

LRESULT insert(HWND handle, LPARAM lparam) {
    const auto& request = *reinterpret_cast<const TVINSERTSTRUCTA*>(lparam);
    TreeItem item;
    if ((request.item.mask & TVIF_TEXT) != 0 && request.item.pszText != nullptr)
        item.text = request.item.pszText;
    if ((request.item.mask & TVIF_PARAM) != 0)
        item.parameter = request.item.lParam;
    return reinterpret_cast<LRESULT>(
        tree_data(handle).items.insert(request.hParent, request.hInsertAfter, std::move(item)));
}

/// If the item that is closed contains the selected one, it becomes selected itself. As under Wine, there is
/// no notification.
void rescue_selection(TreeData& data, HTREEITEM closed) {
    const TreeItem* item = data.items.find(data.selected);
    while (item != nullptr && item->parent != closed)
        item = data.items.find(item->parent);
    if (item != nullptr)
        data.selected = closed;
}

void open_ancestors(HWND handle, HTREEITEM target) {
    const TreeItem* item = tree_data(handle).items.find(target);
    for (HTREEITEM above = item == nullptr ? nullptr : item->parent; above != nullptr && IsWindow(handle);
         above = tree_data(handle).items.find(above)->parent)
        expand_tree_item(handle, TVE_EXPAND, above);
}

/// Children go before their parent, each reported; no call stack is spent on the depth of the tree.
void erase_below(HWND handle, HTREEITEM target) {
    HTREEITEM each = target;
    while (each != nullptr) {
        const TreeItem item = *tree_data(handle).items.find(each);
        if (item.first_child != nullptr) {
            each = item.first_child;
            continue;
        }
        notify_items(handle, TVN_DELETEITEMA, 0, each, nullptr);
        tree_data(handle).items.remove(each);
        each = each == target ? nullptr : item.next != nullptr ? item.next : item.parent;
    }
}

LRESULT erase_all(HWND handle) {
    TreeData& data = tree_data(handle);
    data.selected = nullptr;
    while (data.items.first_root() != nullptr)
        erase_below(handle, data.items.first_root());
    return TRUE;
}

LRESULT read_item(HWND handle, LPARAM lparam) {
    auto& request = *reinterpret_cast<TVITEMA*>(lparam);
    const TreeData& data = tree_data(handle);
    const TreeItem* item = data.items.find(request.hItem);
    if (item == nullptr)
        return FALSE;
    if ((request.mask & TVIF_TEXT) != 0 && request.cchTextMax > 0) {
        const std::string text = item->text.substr(0, static_cast<std::size_t>(request.cchTextMax) - 1);
        std::memcpy(request.pszText, text.c_str(), text.size() + 1);
    }
    if ((request.mask & TVIF_PARAM) != 0)
        request.lParam = item->parameter;
    if ((request.mask & TVIF_STATE) != 0)
        request.state = state_of(data, request.hItem);
    return TRUE;
}

HTREEITEM related(const TreeData& data, WPARAM relation, HTREEITEM handle) {
    if (relation == TVGN_CARET)
        return data.selected;
    if (relation == TVGN_ROOT || (relation == TVGN_CHILD && (handle == nullptr || handle == TVI_ROOT)))
        return data.items.first_root();
    const TreeItem* item = data.items.find(handle);
    if (item == nullptr)
        return nullptr;
    switch (relation) {
    case TVGN_NEXT: return item->next;
    case TVGN_NEXTVISIBLE: return data.items.visible_after(handle);
    case TVGN_CHILD: return item->first_child;
    default: return nullptr;
    }
}

/// A tree that gets the focus without a selection selects its first item.
LRESULT change_focus(HWND handle, bool gained) {
    const TreeData& data = tree_data(handle);
    if (gained && data.selected == nullptr && data.items.first_root() != nullptr)
        select_tree_item(handle, data.items.first_root(), TVC_UNKNOWN);
    if (IsWindow(handle))
        notify_parent_of_tree(handle, gained ? NM_SETFOCUS : NM_KILLFOCUS);
    return 0;
}

} // namespace

LRESULT notify_parent_of_tree(HWND handle, NMHDR& header, UINT code) {
    const Window& window = existing_window(handle);
    header = {handle, static_cast<UINT_PTR>(window.id), code};
    return SendMessageA(window.parent, WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

LRESULT notify_parent_of_tree(HWND handle, UINT code) {
    NMHDR header{};
    return notify_parent_of_tree(handle, header, code);
}

LRESULT expand_tree_item(HWND handle, WPARAM what, HTREEITEM target) {
    TreeItem* item = tree_data(handle).items.find(target);
    const bool expanded = (what & 3) == TVE_EXPAND;
    if (item == nullptr || item->first_child == nullptr || item->expanded == expanded)
        return FALSE;
    if (notify_items(handle, TVN_ITEMEXPANDINGA, static_cast<UINT>(what), nullptr, target) != 0)
        return FALSE;
    tree_data(handle).items.find(target)->expanded = expanded;
    if (!expanded)
        rescue_selection(tree_data(handle), target);
    notify_items(handle, TVN_ITEMEXPANDEDA, static_cast<UINT>(what), nullptr, target);
    return TRUE;
}

/// The parent can refuse the change when it is announced, but no longer when it is reported.
LRESULT select_tree_item(HWND handle, HTREEITEM target, UINT cause) {
    const HTREEITEM before = tree_data(handle).selected;
    if (target != nullptr && tree_data(handle).items.find(target) == nullptr)
        return FALSE;
    if (target == before)
        return TRUE;
    if (notify_items(handle, TVN_SELCHANGINGA, cause, before, target) != 0)
        return FALSE;
    tree_data(handle).selected = target;
    open_ancestors(handle, target);
    if (IsWindow(handle))
        notify_items(handle, TVN_SELCHANGEDA, cause, before, target);
    return TRUE;
}

LRESULT tree_view_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CREATE)
        return create(handle);
    const auto* data = data_of<TreeData>(handle);
    if (data == nullptr)
        return DefWindowProcA(handle, message, wparam, lparam);
    const auto item = reinterpret_cast<HTREEITEM>(lparam);
    switch (message) {
    case WM_DESTROY: return erase_all(handle);
    case WM_GETDLGCODE: return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: return change_focus(handle, message == WM_SETFOCUS);
    case WM_LBUTTONDOWN: return take_tree_click(handle, lparam);
    case WM_KEYDOWN: return take_tree_key(handle, wparam);
    case WM_CHAR: return take_tree_character(handle, wparam);
    case TVM_INSERTITEMA: return insert(handle, lparam);
    case TVM_EXPAND: return expand_tree_item(handle, wparam, item);
    case TVM_GETITEMRECT: return item_rectangle(handle, wparam != 0, lparam);
    case TVM_GETNEXTITEM: return reinterpret_cast<LRESULT>(related(*data, wparam, item));
    case TVM_SELECTITEM: return wparam == TVGN_CARET ? select_tree_item(handle, item, TVC_UNKNOWN) : FALSE;
    case TVM_GETITEMA: return read_item(handle, lparam);
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
