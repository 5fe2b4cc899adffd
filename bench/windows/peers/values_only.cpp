// A program that makes only the registry calls by which one learns of many values that they are as they
// should be. usage: bare_values ENTRIES
#include "platform/win32.h"
#include "seeded.h"

#include <cstdio>
#include <cstdlib>

int main(int, char** words) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, seeded::agent_key, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
        return 1;
    int found = 0;
    const int entries = std::atoi(words[1]);
    for (int i = 0; i < entries; ++i) {
        char name[64];
        char data[1024];
        DWORD size = sizeof data;
        DWORD type = 0;
        std::snprintf(name, sizeof name, seeded::value_format, i);
        found += RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &size) ==
                 ERROR_SUCCESS;
    }
    RegCloseKey(key);
    return found == entries ? 0 : 1;
}
