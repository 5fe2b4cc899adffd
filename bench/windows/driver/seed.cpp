#include "driver/seed.h"

#include "platform/win32.h"
#include "seeded.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace bench {
namespace {

constexpr char file_name[] = "bench.spec";

std::string path_in_current_folder() {
    char folder[MAX_PATH] = "";
    GetCurrentDirectoryA(sizeof folder, folder);
    return std::string(folder) + '\\' + file_name;
}

void put_value(const char* path, const char* name, const std::string& text) {
    HKEY key = nullptr;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, path, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr) != 0)
        throw std::runtime_error(std::string("cannot make the key ") + path);
    RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>(text.size()) + 1);
    RegCloseKey(key);
}

std::string value(const std::string& name) {
    char text[256] = "";
    DWORD size = sizeof text;
    RegGetValueA(HKEY_LOCAL_MACHINE, seeded::agent_key, name.c_str(), RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

std::string head() { return std::string("\\") + seeded::agent_key + "\nAgent\n"; }

std::string entry(const std::string& title, const std::string& value_name, const char* type) {
    return "$" + title + "\n" + value_name + "\nWhat this setting is good for.\n" + type + "\n";
}

std::string spec_of(int entries) {
    std::string text = head();
    for (int i = 0; i < entries; ++i) {
        if (i % seeded::entries_per_group == 0)
            text += "!Group " + std::to_string(i / seeded::entries_per_group) + "\n";
        text += entry(numbered(seeded::title_format, i), numbered(seeded::value_format, i), "String");
    }
    return text;
}

std::string spec_of_connection_test() {
    return head() + "!Servers\n" + entry("Name", "Name", "String") + entry("Domain", "Domain", "String") +
           entry("Servers", "Servers", "ServerList") + entry("Port", "Port", "Integer") +
           entry("Test", "", "ConnectionTest") + "Name\nDomain\nServers\nPort\n";
}

std::string server_list(const Servers& servers) {
    std::string list;
    for (int number = 1; number <= servers.count; ++number)
        list += (list.empty() ? "" : ",") + servers.address(number);
    return list;
}

} // namespace

std::string numbered(const char* format, int number) {
    char text[64];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

Seed::Seed(const std::string& spec_text) : path_(path_in_current_folder()) {
    std::ofstream(path_, std::ios::binary) << spec_text;
    put_value(seeded::list_key, seeded::list_value, path_);
}

Seed::Seed(int entries) : Seed(spec_of(entries)) {
    entries_ = entries;
    reset_values();
}

Seed Seed::of_connection_test(const Servers& servers) {
    put_value(seeded::agent_key, "Name", seeded::agent_name);
    put_value(seeded::agent_key, "Domain", seeded::agent_domain);
    put_value(seeded::agent_key, "Servers", server_list(servers));
    put_value(seeded::agent_key, "Port", std::to_string(servers.port));
    return Seed(spec_of_connection_test());
}

Seed::~Seed() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, seeded::agent_key);
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, seeded::list_key);
    DeleteFileA(path_.c_str());
}

void Seed::reset_values() const {
    for (int i = 0; i < entries_; ++i)
        put_value(seeded::agent_key, numbered(seeded::value_format, i).c_str(),
                  numbered(seeded::text_format, i));
}

bool Seed::is_changed() const {
    for (int i = 0; i < entries_; ++i) {
        if (value(numbered(seeded::value_format, i)) != numbered(seeded::changed_format, i))
            return false;
    }
    return true;
}

} // namespace bench
