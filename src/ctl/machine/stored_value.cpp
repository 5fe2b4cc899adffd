#include "ctl/machine/stored_value.h"

#include <cstdint>
#include <cstring>

namespace ctl {
namespace {

template <typename Number> std::string decimal(const char* octets) {
    Number number = 0;
    std::memcpy(&number, octets, sizeof number);
    return std::to_string(number);
}

std::string text_of(DWORD type, ValueData& data) {
    if (type == REG_DWORD && data.size == sizeof(std::uint32_t))
        return decimal<std::uint32_t>(data.octets);
    if (type == REG_QWORD && data.size == sizeof(std::uint64_t))
        return decimal<std::uint64_t>(data.octets);
    return data.text();
}

} // namespace

StoredValue look_up(const MachineKey& key, const std::string& name) {
    ValueData data;
    StoredValue value;
    const LSTATUS status = query_value(key.get(), name.c_str(), data, &value.type);
    value.is_too_long = status == ERROR_MORE_DATA;
    value.is_there = status == ERROR_SUCCESS || value.is_too_long;
    if (status == ERROR_SUCCESS)
        value.text = text_of(value.type, data);
    return value;
}

std::string type_name(DWORD type) {
    constexpr const char* names[] = {"REG_NONE",   "REG_SZ",       "REG_EXPAND_SZ",
                                     "REG_BINARY", "REG_DWORD",    "REG_DWORD_BIG_ENDIAN",
                                     "REG_LINK",   "REG_MULTI_SZ", "REG_RESOURCE_LIST"};
    if (type == REG_QWORD)
        return "REG_QWORD";
    return type < std::size(names) ? names[type] : "type " + std::to_string(type);
}

} // namespace ctl
