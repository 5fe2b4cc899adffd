#include "substitute/calls.h"
#include "substitute/controls/controls.h"
#include "substitute/text.h"
#include "substitute/windows/window.h"

#include <map>

namespace substitute {
namespace {

std::string key_of(LPCSTR name) { return folded(std::string(name == nullptr ? "" : name)); }

using Classes = std::map<std::string, WindowClass>;

void add_system_class(Classes& classes, const char* name, WNDPROC procedure) {
    WindowClass& added = classes[key_of(name)];
    added.name = name;
    added.of_system = true;
    added.details.cbSize = sizeof added.details;
    added.details.lpfnWndProc = procedure;
}

Classes system_classes() {
    Classes classes;
    add_system_class(classes, "Button", button_procedure);
    add_system_class(classes, "Static", static_procedure);
    add_system_class(classes, "Edit", edit_procedure);
    add_system_class(classes, "ComboBox", combo_box_procedure);
    add_system_class(classes, "SysTreeView32", tree_view_procedure);
    add_system_class(classes, dialog_class, DefWindowProcA);
    add_system_class(classes, folder_browser_class, folder_browser_procedure);
    return classes;
}

Classes& classes_of_system() {
    static Classes instance = system_classes();
    return instance;
}

/// The program's own classes; one with the name of a system class replaces it.
Classes& classes() {
    static Classes instance;
    return instance;
}

const ResetHook reset_hook([] {
    classes().clear();
    classes_of_system() = system_classes();
});

WindowClass* find_in(Classes& searched, LPCSTR name) {
    const auto found = searched.find(key_of(name));
    return found == searched.end() ? nullptr : &found->second;
}

/// Numbers of the upper quarter, which are reused after a class has been unregistered.
ATOM next_atom() {
    static ATOM last = 0;
    last = static_cast<ATOM>((last + 1) | 0xC000);
    return last;
}

} // namespace

WindowClass* find_class(LPCSTR name) {
    WindowClass* const own = find_in(classes(), name);
    return own != nullptr ? own : find_in(classes_of_system(), name);
}

} // namespace substitute

using namespace substitute;

ATOM RegisterClassExA(const WNDCLASSEXA* details) {
    if (failing("RegisterClassExA", ERROR_NOT_ENOUGH_MEMORY))
        return 0;
    if (details->cbSize != sizeof *details || details->lpfnWndProc == nullptr)
        return refuse<ATOM>(ERROR_INVALID_PARAMETER);
    if (find_in(classes(), details->lpszClassName) != nullptr)
        return refuse<ATOM>(ERROR_CLASS_ALREADY_EXISTS);
    classes()[key_of(details->lpszClassName)] = {details->lpszClassName, *details, false, 0};
    return next_atom();
}

BOOL UnregisterClassA(LPCSTR name, HINSTANCE) {
    if (failing("UnregisterClassA", ERROR_CLASS_DOES_NOT_EXIST))
        return FALSE;
    const WindowClass* found = find_in(classes(), name);
    if (found == nullptr)
        return refuse<ATOM>(ERROR_CLASS_DOES_NOT_EXIST);
    if (found->windows > 0)
        return refuse<ATOM>(ERROR_CLASS_HAS_WINDOWS);
    classes().erase(key_of(name));
    return TRUE;
}

BOOL GetClassInfoExA(HINSTANCE, LPCSTR name, WNDCLASSEXA* details) {
    if (failing("GetClassInfoExA", ERROR_CLASS_DOES_NOT_EXIST))
        return FALSE;
    const WindowClass* found = find_class(name);
    if (found == nullptr)
        return refuse<ATOM>(ERROR_CLASS_DOES_NOT_EXIST);
    *details = found->details;
    details->lpszMenuName = nullptr;
    details->lpszClassName = name;
    return TRUE;
}
