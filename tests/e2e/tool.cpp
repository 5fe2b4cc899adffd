#include "e2e/tool.h"

#include "e2e/input.h"
#include "e2e/wait.h"
#include "e2e/window.h"

namespace e2e {
namespace {

constexpr char main_class[] = "trconfigclass";
constexpr char box_class[] = "#32770";
constexpr char wait_class[] = "tavrin_service_win";

bool is_frame(HWND child) {
    return is_class(child, "Button") && (GetWindowLongA(child, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

HWND find_frame(HWND window) {
    for (HWND child : children_of(window))
        if (is_frame(child))
            return child;
    return nullptr;
}

/// The text of a message box is in the static control that is not the icon.
std::string message_of(HWND box) {
    for (HWND child : children_of(box))
        if (is_class(child, "Static") && (GetWindowLongA(child, GWL_STYLE) & SS_TYPEMASK) != SS_ICON)
            return text_of(child);
    return "";
}

std::string tested_program() {
    const std::string given = environment("TAVRIN_TESTED_PROGRAM");
    return given.empty() ? program_folder() + "\\tavrinconfig.exe" : given;
}

void post_click(HWND button) { PostMessageA(button, BM_CLICK, 0, 0); }

} // namespace

void Box::press(int button) const {
    const HWND control = GetDlgItem(window, button);
    if (!control)
        throw std::runtime_error("the box has no button " + std::to_string(button));
    const auto is_gone = [this] { return !IsWindow(window); };
    post_click(control);
    try {
        wait_for("the end of a box", is_gone, 5);
    } catch (const std::runtime_error&) {
        // Activation moved here from another window during the click and interrupted it.
        post_click(control);
        wait_for("the end of a box", is_gone);
    }
}

Tool::Tool() : Tool("\"" + tested_program() + "\"") {}

Tool::Tool(const std::string& command_line) : process(command_line) {}

HWND Tool::find(const char* window_class, const std::string& caption) const {
    for (HWND window : windows_of(process.id())) {
        // Asks the system and not the window, which may go at any moment.
        char title[256] = "";
        GetWindowTextA(window, title, sizeof title);
        if (is_class(window, window_class) && (caption.empty() || title == caption))
            return window;
    }
    return nullptr;
}

HWND Tool::window() {
    HWND found = nullptr;
    wait_for("the main window", [&] { return (found = find(main_class)) != nullptr; });
    return found;
}

bool Tool::has_window() const { return find(main_class) != nullptr; }

HWND Tool::control(Control id) {
    const HWND found = GetDlgItem(window(), id);
    if (!found)
        throw std::runtime_error("the main window has no control " + std::to_string(id));
    return found;
}

RemoteTree Tool::tree() { return {control(tree_id), process.handle()}; }

void Tool::select(const TreePath& path) {
    tree().select(path);
    page(path.back());
}

Page Tool::page(const std::string& title) {
    const HWND main_window = window();
    Page shown = {};
    wait_for("the page of " + title, [&] {
        shown.frame = find_frame(main_window);
        return shown.frame && text_of(shown.frame) == title;
    });
    shown.title = title;
    std::vector<HWND> controls = children_of(shown.frame);
    shown.help = text_of(controls.front());
    shown.controls.assign(controls.begin() + 1, controls.end());
    return shown;
}

bool Tool::shows_page() { return find_frame(window()) != nullptr; }

void Tool::press(Control button) { post_click(control(button)); }

HWND Tool::page_button(const std::string& title, const std::string& button) {
    for (HWND found : page(title).controls)
        if (text_of(found) == button)
            return found;
    throw std::runtime_error("the page has no button " + button);
}

void Tool::press_on_page(const std::string& title, const std::string& button) {
    post_click(page_button(title, button));
}

void Tool::expect_changes(bool changes) {
    const HWND ok = control(ok_id);
    const HWND close = control(close_id);
    wait_for(changes ? "the button Cancel" : "the button Close", [&] {
        return (IsWindowEnabled(ok) != FALSE) == changes && text_of(close) == (changes ? "Cancel" : "Close");
    });
}

Box Tool::box() {
    Box found = {};
    wait_for("a message box", [&] {
        found.window = find(box_class);
        return found.window && !message_of(found.window).empty();
    });
    found.caption = text_of(found.window);
    found.text = message_of(found.window);
    return found;
}

HWND Tool::dialog(const std::string& caption) {
    HWND found = nullptr;
    wait_for("the dialog " + caption, [&] { return (found = find(box_class, caption)) != nullptr; });
    return found;
}

HWND Tool::wait_window() {
    HWND found = nullptr;
    wait_for("the wait window", [&] { return (found = find(wait_class)) != nullptr; });
    return found;
}

bool Tool::shows_wait_window() const { return find(wait_class) != nullptr; }

} // namespace e2e
