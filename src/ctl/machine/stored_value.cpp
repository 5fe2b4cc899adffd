#include "ctl/machine/stored_value.h"

#include "ctl/io/encoding.h"
#include "ctl/io/reg_file.h"
#include "ctl/io/sha256.h"
#include "ctl/io/visible.h"
#include "ctl/machine/exact_value.h"

#include <cstdint>
#include <cstring>

namespace ctl {
namespace {

constexpr const char* too_long = "longer than 1,024 bytes";
/// Of a long value no more than these are shown in a line.
constexpr std::size_t shown_octets = 32;

template <typename Number> std::string decimal(const std::string& octets) {
    Number number = 0;
    std::memcpy(&number, octets.data(), sizeof number);
    return std::to_string(number);
}

bool is_text(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

/// Octets without a meaning in the code page would come back as others.
bool survives_utf8(const std::string& text) { return is_ascii(text) || from_utf8(to_utf8(text)) == text; }

/// A value that was removed in the meantime is not there.
void add_octets(StoredValue& value, const MachineKey& key, const std::string& name) {
    auto exact = read_exactly(key, name);
    value.is_there = exact.has_value();
    if (!exact)
        return;
    value.type = exact->type;
    value.octets = std::move(exact->octets);
}

std::string digits(const std::string& octets) {
    return hex_of(std::string_view(octets).substr(0, shown_octets)) +
           (octets.size() > shown_octets ? "..." : "");
}

std::string shown_octets_of(DWORD type, const std::string& octets) {
    if (type == REG_DWORD && octets.size() == sizeof(std::uint32_t))
        return decimal<std::uint32_t>(octets);
    if (type == REG_QWORD && octets.size() == sizeof(std::uint64_t))
        return decimal<std::uint64_t>(octets);
    return octets.empty() ? "empty" : "hex " + digits(octets);
}

} // namespace

StoredValue look_up(const MachineKey& key, const std::string& name) {
    ValueData data;
    StoredValue value;
    const LSTATUS status = query_value(key.get(), name.c_str(), data, &value.type);
    value.is_too_long = status == ERROR_MORE_DATA;
    value.is_there = status == ERROR_SUCCESS || value.is_too_long;
    if (status != ERROR_SUCCESS)
        return value;
    value.text = data.text();
    if (!is_text(value.type) || !survives_utf8(value.text))
        add_octets(value, key, name);
    return value;
}

StoredValue stored_as(const ExactValue& exact) {
    StoredValue value;
    value.is_there = true;
    value.type = exact.type;
    const std::string words = from_utf16(exact.octets);
    const std::string text = words.substr(0, words.find('\0'));
    const auto own = from_utf8(text);
    if (is_text(exact.type) && own && to_utf16(text + '\0') == exact.octets) {
        value.text = *own;
    } else {
        value.octets = exact.octets;
    }
    return value;
}

std::string shown(const StoredValue& value) {
    if (!value.is_there)
        return "(not set)";
    if (value.is_too_long)
        return std::string("(") + too_long + ")";
    const std::string words = value.octets         ? shown_octets_of(value.type, *value.octets)
                              : value.text.empty() ? "(empty)"
                                                   : visible(to_utf8(value.text));
    return value.type == REG_SZ && !value.octets ? words : words + " (" + type_name(value.type) + ")";
}

Json json_of(const StoredValue& value) {
    if (!value.is_there)
        return nullptr;
    if (value.is_too_long)
        return {{"unreadable", too_long}};
    if (value.octets)
        return {{"type", type_name(value.type)}, {"octets", hex_of(*value.octets)}};
    if (value.type != REG_SZ)
        return {{"value", to_utf8(value.text)}, {"type", type_name(value.type)}};
    return to_utf8(value.text);
}

} // namespace ctl
