#include "support/display.h"

#include "platform/win32.h"

#include <string>

namespace {

bool runs_under_wine() {
    const HMODULE library = GetModuleHandleA("ntdll.dll");
    return library != nullptr && GetProcAddress(library, "wine_get_version") != nullptr;
}

std::string program_name() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string whole(path);
    return whole.substr(whole.find_last_of("\\/") + 1);
}

} // namespace

void prepare_display() {
    if (!runs_under_wine())
        return;
    const std::string path = "Software\\Wine\\AppDefaults\\" + program_name() + "\\X11 Driver";
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key,
                        nullptr) != 0)
        return;
    RegSetValueExA(key, "Managed", 0, REG_SZ, reinterpret_cast<const BYTE*>("N"), 2);
    RegCloseKey(key);
}
