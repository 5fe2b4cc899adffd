#include "e2e/window.h"

#include "e2e/wait.h"

namespace e2e {

LRESULT send(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutA(window, message, wparam, lparam, SMTO_NORMAL, limit * 1000, &result))
        throw std::runtime_error("no answer to message " + std::to_string(message) + ": error " +
                                 std::to_string(GetLastError()));
    return static_cast<LRESULT>(result);
}

std::string text_of(HWND window) {
    char text[8192] = "";
    send(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

std::string class_of(HWND window) {
    char name[256] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool is_class(HWND window, const char* name) { return lstrcmpiA(class_of(window).c_str(), name) == 0; }

std::vector<HWND> children_of(HWND window) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

std::vector<HWND> windows_of(DWORD process) {
    struct Search {
        DWORD process;
        std::vector<HWND> found;
    } search = {process, {}};
    const auto visit = [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == wanted.process && IsWindowVisible(window))
            wanted.found.push_back(window);
        return TRUE;
    };
    EnumWindows(visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND focus_of(HWND window) {
    GUITHREADINFO information = {};
    information.cbSize = sizeof information;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &information);
    return information.hwndFocus;
}

bool is_painted(HWND window) {
    if (!IsWindowVisible(window))
        return true;
    if (GetUpdateRect(window, nullptr, FALSE))
        return false;
    for (HWND child : children_of(window))
        if (!is_painted(child))
            return false;
    return true;
}

} // namespace e2e
