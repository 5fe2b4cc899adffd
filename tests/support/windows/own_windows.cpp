#include "support/own_windows.h"

namespace {

struct Search {
    const char* class_name;
    std::vector<HWND> found;
};

BOOL CALLBACK visit(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    if (lstrcmpiA(name, search.class_name) == 0)
        search.found.push_back(window);
    return TRUE;
}

} // namespace

std::vector<HWND> own_windows(const char* class_name) {
    Search search = {class_name, {}};
    EnumThreadWindows(GetCurrentThreadId(), visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}
