#include "support/own_windows.h"

#include <string>

std::vector<HWND> own_windows(const char* class_name) {
    std::vector<HWND> found;
    const HWND any = FindWindowA(class_name, nullptr);
    for (HWND each = any ? GetWindow(any, GW_HWNDFIRST) : nullptr; each;
         each = GetWindow(each, GW_HWNDNEXT)) {
        char name[64] = "";
        GetClassNameA(each, name, sizeof name);
        if (std::string(class_name) == name)
            found.push_back(each);
    }
    return found;
}
