#include "platform/substitute/controls/controls.h"
#include "platform/substitute/controls/edit_text.h"
#include "platform/substitute/windows/window.h"
#include "platform/substitute/windows/window_calls.h"

#include <algorithm>
#include <cctype>

/// "Edit". Its text lives in the window's text; the selection and the limit in EditData.
namespace substitute {
namespace {

/// What a user may type into an edit control unless the program says otherwise.
constexpr std::size_t default_limit = 30000;
constexpr std::size_t greatest_limit = 0x7FFFFFFE;

struct EditData : ControlData {
    std::size_t start = 0;
    std::size_t end = 0;
    std::size_t limit = default_limit;
    bool modified = false;
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

LRESULT dialog_code(HWND handle, LPARAM message) {
    LRESULT code = DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
    const auto* asked = reinterpret_cast<const MSG*>(message);
    const bool is_multiline = has_style(handle, ES_MULTILINE);
    if (is_multiline)
        code |= DLGC_WANTALLKEYS;
    if (is_multiline && asked != nullptr && asked->message == WM_KEYDOWN && asked->wParam == VK_ESCAPE)
        code &= ~DLGC_WANTALLKEYS;
    return code;
}

/// A program's text is not held to the limit. A multi-line edit does not report it.
LRESULT set_text(HWND handle, LPARAM text) {
    const auto* source = reinterpret_cast<const char*>(text);
    existing_window(handle).text = source == nullptr ? "" : source;
    auto& data = *data_of<EditData>(handle);
    data.start = data.end = 0;
    data.modified = false;
    if (!has_style(handle, ES_MULTILINE))
        notify_change(handle);
    return TRUE;
}

/// Puts `text` in place of the selection, as far as the limit lets it, and reports the change.
void replace_selection(HWND handle, const std::string& text, bool held_to_limit) {
    auto& data = *data_of<EditData>(handle);
    std::string& whole = existing_window(handle).text;
    const std::size_t rest = whole.size() - (data.end - data.start);
    std::size_t length = text.size();
    if (held_to_limit && rest + length > data.limit)
        length = rest < data.limit ? data.limit - rest : 0;
    whole.replace(data.start, data.end - data.start, text, 0, length);
    data.start = data.end = data.start + length;
    data.modified = true;
    if (length < text.size())
        notify_parent(handle, EN_MAXTEXT);
    if (IsWindow(handle))
        notify_change(handle);
}

void select(HWND handle, std::size_t start, std::size_t end) {
    auto& data = *data_of<EditData>(handle);
    const std::size_t size = existing_window(handle).text.size();
    data.start = std::min({start, end, size});
    data.end = std::min(std::max(start, end), size);
}

LRESULT set_selection(HWND handle, WPARAM start, LPARAM end) {
    const auto from = static_cast<int>(start);
    const auto& data = *data_of<EditData>(handle);
    if (from < 0) {
        select(handle, data.end, data.end);
    } else {
        select(handle, static_cast<std::size_t>(from),
               end < 0 ? std::string::npos : static_cast<std::size_t>(end));
    }
    return 0;
}

LRESULT selection(HWND handle, WPARAM start, LPARAM end) {
    const auto& data = *data_of<EditData>(handle);
    if (start != 0)
        *reinterpret_cast<DWORD*>(start) = static_cast<DWORD>(data.start);
    if (end != 0)
        *reinterpret_cast<DWORD*>(end) = static_cast<DWORD>(data.end);
    return MAKELONG(static_cast<int>(data.start), static_cast<int>(data.end));
}

void erase(HWND handle, bool before_caret) {
    const auto& data = *data_of<EditData>(handle);
    const std::size_t size = existing_window(handle).text.size();
    if (data.start == data.end) {
        if (before_caret ? data.start == 0 : data.end == size)
            return;
        before_caret ? select(handle, data.start - 1, data.start) : select(handle, data.end, data.end + 1);
    }
    replace_selection(handle, "", false);
}

LRESULT take_character(HWND handle, WPARAM character) {
    if (has_style(handle, ES_READONLY))
        return 1;
    const auto typed = static_cast<unsigned char>(character);
    if (typed == '\b') {
        erase(handle, true);
    } else if (typed == '\r' && has_style(handle, ES_MULTILINE)) {
        replace_selection(handle, "\r\n", true);
    } else if (typed >= ' ' && typed != 0x7F && (!has_style(handle, ES_NUMBER) || std::isdigit(typed) != 0)) {
        replace_selection(handle, std::string(1, static_cast<char>(typed)), true);
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
    case VK_END: move_caret(handle, existing_window(handle).text.size()); break;
    case VK_LEFT: move_caret(handle, data.end == 0 ? 0 : data.end - 1); break;
    case VK_RIGHT: move_caret(handle, data.end + 1); break;
    case VK_DELETE:
        if (!has_style(handle, ES_READONLY))
            erase(handle, false);
        break;
    default: break;
    }
    return 0;
}

LRESULT limit_text(HWND handle, WPARAM limit) {
    data_of<EditData>(handle)->limit =
        limit == 0 ? greatest_limit : std::min<std::size_t>(limit, greatest_limit);
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
    auto* data = data_of<EditData>(handle);
    if (data == nullptr)
        return DefWindowProcA(handle, message, wparam, lparam);
    switch (message) {
    case WM_GETDLGCODE: return dialog_code(handle, lparam);
    case WM_SETTEXT: return set_text(handle, lparam);
    case WM_SETFONT: existing_window(handle).font = reinterpret_cast<HFONT>(wparam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(existing_window(handle).font);
    case WM_SETFOCUS:
    case WM_KILLFOCUS: return change_focus(handle, message == WM_SETFOCUS);
    case WM_LBUTTONDOWN: set_focus(handle); return 0;
    case WM_CHAR: return take_character(handle, wparam);
    case WM_KEYDOWN: return take_key(handle, wparam);
    case EM_GETSEL: return selection(handle, wparam, lparam);
    case EM_SETSEL: return set_selection(handle, wparam, lparam);
    case EM_REPLACESEL: replace_selection(handle, reinterpret_cast<LPCSTR>(lparam), true); return 0;
    case EM_GETMODIFY: return data->modified ? TRUE : FALSE;
    case EM_SETMODIFY: data->modified = wparam != 0; return 0;
    case EM_LIMITTEXT: return limit_text(handle, wparam);
    case EM_GETLIMITTEXT: return static_cast<LRESULT>(data->limit);
    case EM_GETLINECOUNT: return line_count(handle);
    default: return DefWindowProcA(handle, message, wparam, lparam);
    }
}

} // namespace substitute
