// A program that makes only the Windows calls that the tool cannot avoid: it reads the spec file and each
// entry's value, fills the tree, and writes as many values on OK. It does not keep what it reads, and it
// invents names. usage: bare_tool ENTRIES [PREFIX COUNT PORT]     (the servers, as in peers/servers.h)
#include "peers/bare_window.h"
#include "peers/connections_only.h"
#include "seeded.h"

#include <cstdio>
#include <cstdlib>

namespace {

int entries = 0;

void read_spec_file() {
    HKEY key = nullptr;
    char path[MAX_PATH] = "";
    DWORD size = sizeof path;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, seeded::list_key, 0, KEY_QUERY_VALUE, &key);
    RegQueryValueExA(key, seeded::list_value, nullptr, nullptr, reinterpret_cast<BYTE*>(path), &size);
    RegCloseKey(key);
    const HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    static char chunk[65536];
    while (ReadFile(file, chunk, sizeof chunk, &size, nullptr) && size > 0) {
    }
    CloseHandle(file);
}

void read_value(const char* name) {
    HKEY key = nullptr;
    char data[1024];
    DWORD size = sizeof data;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, seeded::agent_key, 0, KEY_QUERY_VALUE, &key);
    RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(data), &size);
    RegCloseKey(key);
}

void write_value(const char* name, const char* text) {
    HKEY key = nullptr;
    RegOpenKeyExA(HKEY_LOCAL_MACHINE, seeded::agent_key, 0, KEY_SET_VALUE, &key);
    RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                   static_cast<DWORD>(lstrlenA(text)) + 1);
    RegCloseKey(key);
}

HTREEITEM insert(HWND tree, HTREEITEM parent, char* text) {
    TVINSERTSTRUCTA insertion{};
    insertion.hParent = parent;
    insertion.hInsertAfter = TVI_LAST;
    insertion.item.mask = TVIF_TEXT;
    insertion.item.pszText = text;
    return reinterpret_cast<HTREEITEM>(
        SendMessageA(tree, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insertion)));
}

void fill_tree(HWND tree) {
    char text[64] = "Agent";
    const HTREEITEM root = insert(tree, TVI_ROOT, text);
    HTREEITEM group = root;
    for (int i = 0; i < entries; ++i) {
        if (i % seeded::entries_per_group == 0) {
            std::snprintf(text, sizeof text, "Group %d", i / seeded::entries_per_group);
            group = insert(tree, root, text);
        }
        std::snprintf(text, sizeof text, seeded::title_format, i);
        insert(tree, group, text);
    }
}

void write_values() {
    for (int i = 0; i < entries; ++i) {
        char name[32];
        char text[32];
        std::snprintf(name, sizeof name, seeded::value_format, i);
        std::snprintf(text, sizeof text, seeded::changed_format, i);
        write_value(name, text);
    }
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show_command) {
    entries = __argc > 1 ? std::atoi(__argv[1]) : 0;
    connections_only::servers = servers_of(__argc, __argv, 2);
    CoInitialize(nullptr);
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 0), &data);
    read_spec_file();
    for (int i = 0; i < entries; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, seeded::value_format, i);
        read_value(name);
    }
    return run_bare_window(instance, show_command, {fill_tree, write_values, connections_only::test});
}
