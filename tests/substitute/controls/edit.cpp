#include "substitute/controls/controls.h"
#include "substitute/controls/edit_text.h"
#include "substitute/windows/window.h"
#include "substitute/windows/window_calls.h"

#include <algorithm>
#include <cctype>

/// "Edit". Its text lives in the window's text; the selection in EditData.
namespace substitute {
namespace {

/// Whether a user can type the character into an edit control.
constexpr std::size_t typing_limit = 30000;

struct EditData : ControlData {
    std::size_t start = 0;
    std::size_t end = 0;
};

bool has_style(HWND handle, DWORD style) { return (existing_window(handle).style & style) != 0; }

void notify_change(HWND handle) {
    notify_parent(handle, EN_UPDATE);
    notify_parent(handle, EN_CHANGE);
}

LRESULT create(HWND handle) {
    existing_window(handle).control = std::make_unique<EditData>();
    return 0;
}

/// A program's text is not held to the limit. A multi-line edit does not report it.
LRESULT set_text(HWND handle, LPARAM text) {
    const auto* source = reinterpret_cast<const char*>(text);
    existing_window(handle).text = source == nullptr ? "" : source;
    auto& data = *data_of<EditData>(handle);
    data.start = data.end = 0;
    if (!has_style(handle, ES_MULTILINE))
        notify_change(handle);
    return TRUE;
}

/// Puts `text` in place of the selection, unless the whole becomes too long, and reports the change.
void replace_selection(HWND handle, const std::string& text) {
    auto& data = *data_of<EditData>(handle);
    std::string& whole = existing_window(handle).text;
    if (whole.size() - (data.end - data.start) + text.size() <= typing_limit) {
        whole.replace(data.start, data.end - data.start, text);
        data.start = data.end = data.start + text.size();
    }
    notify_change(handle);
}

void select(HWND handle, std::size_t start, std::size_t end) {
    auto& data = *data_of<EditData>(handle);
    const std::size_t size = existing_window(handle).text.size();
    data.start = std::min({start, end, size});
    data.end = std::min(std::max(start, end), size);
}

LRESULT set_selection(HWND handle, WPARAM start, LPARAM end) {
    select(handle, start, end < 0 ? std::string::npos : static_cast<std::size_t>(end));
    return 0;
}

void erase_before_caret(HWND handle) {
    const auto& data = *data_of<EditData>(handle);
    if (data.end == 0)
        return;
    if (data.start == data.end)
        select(handle, data.start - 1, data.start);
    replace_selection(handle, "");
}

LRESULT take_character(HWND handle, WPARAM character) {
    if (has_style(handle, ES_READONLY))
        return 1;
    const auto typed = static_cast<unsigned char>(character);
    if (typed == '\b') {
        erase_before_caret(handle);
    } else if (typed >= ' ' && typed != 0x7F && (!has_style(handle, ES_NUMBER) || std::isdigit(typed) != 0)) {
        replace_selection(handle, std::string(1, static_cast<char>(typed)));
    }
    return 1;
}

void move_caret(HWND handle, std::size_t target) {
    const auto& data = *data_of<EditData>(handle);
    const bool extending = GetKeyState(VK_SHIFT) < 0;
    select(handle, extending ? data.start : target, target);
}

LRESULT take_key(HWND handle, WPARAM key) {
    const auto& data = *data_of<EditData>(handle);
    switch (static_cast<int>(key)) {
    case VK_HOME: move_caret(handle, 0); break;
    case VK_RIGHT: move_caret(handle, data.end + 1); break;
    default: break;
    }
    return 0;
}

LRESULT change_focus(HWND handle, bool gained) {
    notify_parent(handle, gained ? EN_SETFOCUS : EN_KILLFOCUS);
    return 0;
}

LRESULT line_count(HWND handle) {
    const Window& window = existing_window(handle);
    const bool wraps = has_style(handle, ES_MULTILINE) && !has_style(handle, ES_AUTOHSCROLL);
    if (!has_style(handle, ES_MULTILINE))
        return 1;
    return count_lines(window.text, wraps ? client_size(window).x : 0);
}

} // namespace

LRESULT edit_procedure(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CREATE)
        return create(handle);
    if (data_of<EditData>(handle) == nullptr)
        return DefWindowProcA(handle, message, wparam, lparam);
    switch (message) {
    case WM_GETDLGCODE: return DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
    case WM_SETTEXT: return set_text(handle, lparam);
    case WM_SETFONT: existing_window(handle).font = reinterpret_cast<HFONT>(wparam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(existing_window(handle).font);
    case WM_SETFOCUS:
    case WM_KILLFOCUS: return change_focus(handle, message == WM_SETFOCUS);
    case WM_LBUTTONDOWN: set_focus(handle); return 0;
    case WM_CHAR: return take_character(handle, wparam);
    case WM_KEYDOWN: return take_key(handle, wparam);
    case EM_SETSEL: return set_selection(handle, wparam, lparam);
    case EM_GETLINECOUNT: return line_count(handle);
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
