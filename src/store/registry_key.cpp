#include "store/registry_key.h"

#include <algorithm>
#include <iterator>

namespace {

void add_value(std::map<std::string, std::string>& target, HKEY key, DWORD index) {
    char name[1024];
    DWORD name_size = sizeof name;
    if (RegEnumValueA(key, index, name, &name_size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        return;
    if (const auto text = query_value_text(key, name); text && !text->empty())
        target.emplace(name, *text);
}

} // namespace

std::string ValueData::text() {
    octets[std::min(size, value_buffer_size - 1)] = '\0';
    return octets;
}

LSTATUS query_value(HKEY key, const char* name, ValueData& data, DWORD* type) {
    return RegQueryValueExA(key, name, nullptr, type, reinterpret_cast<BYTE*>(data.octets), &data.size);
}

std::optional<std::string> query_value_text(HKEY key, const char* name) {
    ValueData data;
    if (query_value(key, name, data) != ERROR_SUCCESS)
        return std::nullopt;
    return data.text();
}

void enumerate_values(std::map<std::string, std::string>& target, HKEY root, const std::string& path) {
    const RegistryKeyHandle key(root, path, KEY_QUERY_VALUE);
    if (!key)
        throw "Cannot read out " + path;
    DWORD count = 0;
    if (RegQueryInfoKeyA(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr,
                         nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        throw "Cannot get number of keys under " + path;
    // It is deliberate that this starts one past the last value and goes down to the first.
    for (DWORD index = count + 1; index-- > 0;)
        add_value(target, key.get(), index);
}

std::vector<std::string> serial_ports() {
    std::map<std::string, std::string> devices;
    try {
        enumerate_values(devices, HKEY_LOCAL_MACHINE, R"(HARDWARE\DEVICEMAP\SERIALCOMM)");
    } catch (const std::string&) {
        return {};
    }
    std::vector<std::string> ports;
    std::transform(devices.begin(), devices.end(), std::back_inserter(ports),
                   [](const auto& device) { return device.second; });
    std::sort(ports.begin(), ports.end());
    return ports;
}

std::map<std::string, std::string> listed_spec_files() {
    std::map<std::string, std::string> paths;
    enumerate_values(paths, HKEY_LOCAL_MACHINE, spec_file_list);
    return paths;
}
