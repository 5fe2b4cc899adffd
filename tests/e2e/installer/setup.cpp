#include "e2e/installer/setup.h"

#include "e2e/agent.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <algorithm>
#include <cstring>
#include <tlhelp32.h>

namespace e2e {
namespace {

constexpr char app_paths[] = "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths";
constexpr char environment_key[] = "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment";
constexpr char entries[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

std::string quoted(const std::string& path) { return "\"" + path + "\""; }

void add_files(std::vector<std::string>& found, const std::string& place) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place))
        found.push_back(entry.path().string());
}

void add_values(std::vector<std::string>& found, HKEY key, const std::string& path) {
    char name[1024];
    for (DWORD i = 0;; ++i) {
        DWORD size = sizeof name;
        if (RegEnumValueA(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return;
        found.push_back(path + " : " + name);
    }
}

void add_keys(std::vector<std::string>& found, const std::string& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    found.push_back(path);
    add_values(found, key, path);
    char name[256];
    for (DWORD i = 0; RegEnumKeyA(key, i, name, sizeof name) == ERROR_SUCCESS; ++i)
        add_keys(found, path + "\\" + name);
    RegCloseKey(key);
}

/// The uninstaller, or the copy of itself that does the work and whose name begins the same way. The folder
/// is not opened meanwhile, because an open folder cannot be removed.
bool uninstaller_runs() {
    const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 process{};
    process.dwSize = sizeof process;
    bool runs = false;
    for (BOOL more = Process32First(processes, &process); more && !runs;
         more = Process32Next(processes, &process))
        runs = _strnicmp(process.szExeFile, "un", 2) == 0;
    CloseHandle(processes);
    return runs;
}

} // namespace

std::string older() { return quoted(environment("TAVRIN_OLDER")); }

std::string newer() { return quoted(environment("TAVRIN_NEWER")); }

std::string uninstaller_in_place() {
    return quoted((folder() / "uninstall.exe").string()) + " /S _?=" + folder().string();
}

std::string older_msi(const char* order) {
    return std::string("msiexec ") + order + " " + quoted(environment("TAVRIN_OLDER_MSI")) + " /qn";
}

std::string newer_msi(const char* order) {
    return std::string("msiexec ") + order + " " + quoted(environment("TAVRIN_NEWER_MSI")) + " /qn";
}

DWORD run_to_end(const std::string& command_line) { return Process(command_line).exit_code(120); }

void remove_all() {
    run_to_end(read_value(entry_key, "QuietUninstallString"));
    wait_for(
        "the end of the removal", [] { return !uninstaller_runs(); }, 120);
}

std::filesystem::path folder() { return environment("ProgramFiles") + "\\Tavrin Configuration"; }

std::filesystem::path start_menu_link(const std::string& name) {
    return environment("ProgramData") + "\\Microsoft\\Windows\\Start Menu\\Programs\\" + name + ".lnk";
}

std::string target_of(const std::filesystem::path& path) {
    char target[MAX_PATH] = "";
    IShellLinkA* link = nullptr;
    IPersistFile* file = nullptr;
    CoInitialize(nullptr);
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                     reinterpret_cast<void**>(&link));
    link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file));
    if (SUCCEEDED(file->Load(path.wstring().c_str(), STGM_READ)))
        link->GetPath(target, sizeof target, nullptr, 0);
    file->Release();
    link->Release();
    CoUninitialize();
    return target;
}

std::string installed_program() { return quoted((folder() / "tavrinconfig.exe").string()); }

std::string app_path() { return read_value(std::string(app_paths) + "\\tavrinconfig.exe", ""); }

std::string machine_path() {
    char path[8192] = "";
    DWORD size = sizeof path;
    RegGetValueA(HKEY_LOCAL_MACHINE, environment_key, "PATH", RRF_RT_ANY | RRF_NOEXPAND, nullptr, path,
                 &size);
    return path;
}

void set_machine_path(const std::string& path) {
    RegSetKeyValueA(HKEY_LOCAL_MACHINE, environment_key, "PATH", REG_EXPAND_SZ, path.c_str(),
                    static_cast<DWORD>(path.size() + 1));
}

DWORD entry_number(const char* name) {
    DWORD number = 0;
    DWORD size = sizeof number;
    RegGetValueA(HKEY_LOCAL_MACHINE, entry_key, name, RRF_RT_REG_DWORD, nullptr, &number, &size);
    return number;
}

std::vector<std::string> traces() {
    std::vector<std::string> found;
    add_files(found, environment("ProgramFiles"));
    add_files(found, environment("ProgramData"));
    add_keys(found, "SOFTWARE\\Tavrin");
    add_keys(found, entries);
    add_keys(found, app_paths);
    found.push_back("PATH=" + machine_path());
    std::sort(found.begin(), found.end());
    return found;
}

HWND Dialog::window_with(int button) const {
    for (HWND window : windows_of(process_.id()))
        if (GetDlgItem(window, button))
            return window;
    return nullptr;
}

void Dialog::press(const std::string& caption) {
    HWND button = nullptr;
    wait_for(
        "the button " + caption,
        [&] {
            button = GetDlgItem(window_with(IDOK), IDOK);
            return button && IsWindowEnabled(button) && text_of(button) == caption;
        },
        120);
    PostMessageA(button, BM_CLICK, 0, 0);
}

std::string Dialog::box_text() {
    HWND box = nullptr;
    wait_for("a box", [&] { return (box = window_with(IDRETRY)) != nullptr; });
    std::string text;
    for (HWND child : children_of(box))
        if (is_class(child, "Static"))
            text += text_of(child);
    return text;
}

void Dialog::answer(int button) {
    const HWND box = window_with(IDRETRY);
    PostMessageA(GetDlgItem(box, button), BM_CLICK, 0, 0);
    wait_for("the end of a box", [&] { return !IsWindow(box); });
}

} // namespace e2e
