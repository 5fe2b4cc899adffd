#include "platform/substitute/calls.h"
#include "platform/substitute/controls.h"
#include "platform/substitute/kernel.h"
#include "platform/substitute/window.h"

#include <cctype>
#include <map>

namespace substitute {
namespace {

constexpr DWORD kClassAlreadyExists = 1410;
constexpr DWORD kClassDoesNotExist = 1411;
constexpr DWORD kClassHasWindows = 1412;
constexpr DWORD kInvalidParameter = 87;
constexpr DWORD kNotEnoughMemory = 8;

std::string lower(LPCSTR name) {
    std::string result(name == nullptr ? "" : name);
    for (char& each : result)
        each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
    return result;
}

using Classes = std::map<std::string, WindowClass>;

void add_system_class(Classes& classes, const char* name, WNDPROC procedure) {
    WindowClass& added = classes[lower(name)];
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
    return classes;
}

Classes& classes() {
    static Classes instance = system_classes();
    return instance;
}

const ResetHook reset_hook([] { classes() = system_classes(); });

ATOM refuse(DWORD code) {
    SetLastError(code);
    return 0;
}

} // namespace

WindowClass* find_class(LPCSTR name) {
    const auto found = classes().find(lower(name));
    return found == classes().end() ? nullptr : &found->second;
}

} // namespace substitute

using namespace substitute;

ATOM RegisterClassExA(const WNDCLASSEXA* details) {
    static ATOM last_atom = 0xC000;
    if (failing("RegisterClassExA", kNotEnoughMemory))
        return 0;
    if (details->cbSize != sizeof *details || details->lpfnWndProc == nullptr)
        return refuse(kInvalidParameter);
    if (find_class(details->lpszClassName) != nullptr)
        return refuse(kClassAlreadyExists);
    classes()[lower(details->lpszClassName)] = {details->lpszClassName, *details, false, 0};
    return ++last_atom;
}

BOOL UnregisterClassA(LPCSTR name, HINSTANCE) {
    if (failing("UnregisterClassA", kClassDoesNotExist))
        return FALSE;
    const WindowClass* found = find_class(name);
    if (found == nullptr || found->of_system)
        return refuse(kClassDoesNotExist);
    if (found->windows > 0)
        return refuse(kClassHasWindows);
    classes().erase(lower(name));
    return TRUE;
}

BOOL GetClassInfoExA(HINSTANCE, LPCSTR name, WNDCLASSEXA* details) {
    if (failing("GetClassInfoExA", kClassDoesNotExist))
        return FALSE;
    const WindowClass* found = find_class(name);
    if (found == nullptr)
        return refuse(kClassDoesNotExist);
    *details = found->details;
    details->lpszMenuName = nullptr;
    details->lpszClassName = name;
    return TRUE;
}
