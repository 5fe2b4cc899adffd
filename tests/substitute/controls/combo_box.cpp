#include "substitute/controls/controls.h"
#include "substitute/text.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>
#include <cstring>

/// "ComboBox" in its drop-down list form.
namespace substitute {
namespace {

constexpr int closed_height = 21;
constexpr int field_height = 15;
constexpr int row_height = 13;

struct ComboData : ControlData {
    std::vector<std::string> items;
    int selected = CB_ERR;
    bool dropped = false;
    /// How many rows the opened list shows before it scrolls, in version 6 of the controls.
    LRESULT rows = 30;
    /// The selection when the list was opened.
    int before = CB_ERR;
};

ComboData& data_at(HWND handle) { return *data_of<ComboData>(handle); }

LRESULT create(HWND handle) {
    existing_window(handle).control = std::make_unique<ComboData>();
    return 0;
}

bool is_index(const ComboData& data, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < data.items.size();
}

const std::string& item(const ComboData& data, int index) {
    return data.items[static_cast<std::size_t>(index)];
}

LRESULT add(ComboData& data, LPARAM text) {
    data.items.emplace_back(reinterpret_cast<LPCSTR>(text));
    return static_cast<LRESULT>(data.items.size()) - 1;
}

/// Chosen by the program, so there is no notification. An index beyond the end changes nothing, -1 takes the
/// selection away.
LRESULT set_selection(ComboData& data, WPARAM wparam) {
    const auto index = static_cast<int>(wparam);
    if (index != CB_ERR && !is_index(data, index))
        return CB_ERR;
    data.selected = index;
    return index;
}

LRESULT height_of(WPARAM index) { return static_cast<int>(index) == -1 ? field_height : row_height; }

LRESULT set_rows(ComboData& data, WPARAM rows) {
    data.rows = static_cast<LRESULT>(rows);
    return TRUE;
}

LRESULT item_length(const ComboData& data, WPARAM wparam) {
    const auto index = static_cast<int>(wparam);
    return is_index(data, index) ? static_cast<LRESULT>(item(data, index).size()) : CB_ERR;
}

LRESULT read_item(const ComboData& data, WPARAM wparam, LPARAM buffer) {
    const auto index = static_cast<int>(wparam);
    if (!is_index(data, index))
        return CB_ERR;
    const std::string& text = item(data, index);
    std::copy_n(text.c_str(), text.size() + 1, reinterpret_cast<char*>(buffer));
    return static_cast<LRESULT>(text.size());
}

std::string selected_text(const ComboData& data) {
    return data.selected == CB_ERR ? std::string() : item(data, data.selected);
}

LRESULT read_text(const ComboData& data, WPARAM capacity, LPARAM buffer) {
    if (capacity == 0)
        return 0;
    const std::string text = selected_text(data).substr(0, capacity - 1);
    std::memcpy(reinterpret_cast<char*>(buffer), text.c_str(), text.size() + 1);
    return static_cast<LRESULT>(text.size());
}

LRESULT drop(HWND handle, bool down) {
    ComboData& data = data_at(handle);
    if (data.dropped == down)
        return TRUE;
    data.dropped = down;
    data.before = data.selected;
    notify_parent(handle, down ? CBN_DROPDOWN : CBN_CLOSEUP);
    return TRUE;
}

/// Ends the user's choosing, with the list open or not.
void settle(HWND handle, bool accepted) {
    notify_parent(handle, accepted ? CBN_SELENDOK : CBN_SELENDCANCEL);
    if (IsWindow(handle))
        drop(handle, false);
}

/// Chosen by the user. While the list is open, the choice is not final.
void choose(HWND handle, int index) {
    ComboData& data = data_at(handle);
    if (!is_index(data, index))
        return;
    data.selected = index;
    if (!data.dropped)
        notify_parent(handle, CBN_SELENDOK);
    if (IsWindow(handle))
        notify_parent(handle, CBN_SELCHANGE);
}

bool closes_list(const ComboData& data, WPARAM key) {
    return data.dropped && (key == VK_RETURN || key == VK_ESCAPE);
}

LRESULT dialog_code(const ComboData& data, WPARAM key) {
    const LRESULT code = DLGC_WANTARROWS | DLGC_WANTCHARS;
    return closes_list(data, key) ? code | DLGC_WANTMESSAGE : code;
}

LRESULT take_key(HWND handle, WPARAM key) {
    const ComboData& data = data_at(handle);
    const auto last = static_cast<int>(data.items.size()) - 1;
    switch (static_cast<int>(key)) {
    case VK_UP: choose(handle, std::max(data.selected - 1, 0)); break;
    case VK_DOWN: choose(handle, std::min(data.selected + 1, last)); break;
    case VK_RETURN:
    case VK_ESCAPE:
        if (data.dropped)
            settle(handle, key == VK_RETURN);
        break;
    default: break;
    }
    return 0;
}

/// A letter goes to the next item that begins with it.
LRESULT take_character(HWND handle, WPARAM character) {
    const ComboData& data = data_at(handle);
    const char wanted = folded(static_cast<char>(character));
    const auto count = static_cast<int>(data.items.size());
    for (int step = 1; step <= count; ++step) {
        const int index = (data.selected + step) % count;
        if (!item(data, index).empty() && folded(item(data, index)[0]) == wanted) {
            choose(handle, index);
            break;
        }
    }
    return 0;
}

LRESULT change_focus(HWND handle, bool gained) {
    if (!gained)
        settle(handle, false);
    if (IsWindow(handle))
        notify_parent(handle, gained ? CBN_SETFOCUS : CBN_KILLFOCUS);
    return 0;
}

/// The height that the program gives is that of the opened list; closed, the box is one line high.
LRESULT limit_height(LPARAM lparam) {
    auto& position = *reinterpret_cast<WINDOWPOS*>(lparam);
    if ((position.flags & SWP_NOSIZE) == 0)
        position.cy = closed_height;
    return 0;
}

} // namespace

/// A click that goes elsewhere closes the open list and is lost. As under Wine, what was selected before is
/// selected again, without a notification.
bool leave_open_list(HWND handle) {
    auto* data = data_of<ComboData>(handle);
    if (data == nullptr || !data->dropped)
        return false;
    data->selected = data->before;
    settle(handle, false);
    return true;
}

LRESULT combo_box_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CREATE)
        return create(handle);
    auto* data = data_of<ComboData>(handle);
    if (data == nullptr)
        return DefWindowProcA(handle, message, wparam, lparam);
    switch (message) {
    case WM_WINDOWPOSCHANGING: return limit_height(lparam);
    case WM_GETDLGCODE: return dialog_code(*data, wparam);
    case WM_SETFONT: existing_window(handle).font = reinterpret_cast<HFONT>(wparam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(existing_window(handle).font);
    case WM_SETTEXT: return CB_ERR;
    case WM_GETTEXT: return read_text(*data, wparam, lparam);
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(selected_text(*data).size());
    case WM_SETFOCUS:
    case WM_KILLFOCUS: return change_focus(handle, message == WM_SETFOCUS);
    case WM_LBUTTONDOWN: set_focus(handle); return drop(handle, !data->dropped);
    case WM_KEYDOWN: return take_key(handle, wparam);
    case WM_CHAR: return take_character(handle, wparam);
    case CB_ADDSTRING: return add(*data, lparam);
    case CB_GETCOUNT: return static_cast<LRESULT>(data->items.size());
    case CB_GETCURSEL: return data->selected;
    case CB_SETCURSEL: return set_selection(*data, wparam);
    case CB_GETLBTEXT: return read_item(*data, wparam, lparam);
    case CB_GETLBTEXTLEN: return item_length(*data, wparam);
    case CB_GETITEMHEIGHT: return height_of(wparam);
    case CB_GETMINVISIBLE: return data->rows;
    case CB_SETMINVISIBLE: return set_rows(*data, wparam);
    case CB_GETDROPPEDSTATE: return data->dropped ? TRUE : FALSE;
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
