#include "ctl/machine/registry.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/printable.h"

#include <cstdint>
#include <cstring>

namespace ctl {
namespace {

constexpr const char* too_long = "longer than 1,024 bytes";
/// The most octets of a long value that are shown in a line.
constexpr std::size_t shown_octets = 32;

[[noreturn]] void refuse(LSTATUS status, const std::string& path, const std::string& if_missing) {
    const std::string key = "the key HKEY_LOCAL_MACHINE\\" + to_utf8(path);
    switch (status) {
    case ERROR_ACCESS_DENIED: throw Failure{ExitCode::access_denied, "access to " + key + " is denied"};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        throw Failure{ExitCode::invalid, !if_missing.empty()
                                             ? if_missing
                                             : key + " does not exist; install the agent, or create the key"};
    default:
        throw Failure{ExitCode::failed,
                      key + " cannot be opened: " + to_utf8(system_error_string(static_cast<DWORD>(status)))};
    }
}

template <typename Number> std::string decimal(const std::string& octets) {
    Number number = 0;
    std::memcpy(&number, octets.data(), sizeof number);
    return std::to_string(number);
}

bool is_text(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

/// Octets that have no meaning in the code page would come back as other octets.
bool survives_utf8(const std::string& text) { return is_ascii(text) || from_utf8(to_utf8(text)) == text; }

/// The value may have been removed in the meantime.
void add_octets(StoredValue& value, const LocalKey& key, const std::string& name) {
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

LocalKey::LocalKey(const std::string& path, REGSAM access, const std::string& if_missing)
    : RegistryKeyHandle(HKEY_LOCAL_MACHINE, path, access) {
    if (!*this)
        refuse(status(), path, if_missing);
}

StoredValue read_value(const LocalKey& key, const std::string& name) {
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

StoredValue as_stored(const RegistryValue& exact) {
    StoredValue value;
    value.is_there = true;
    value.type = exact.type;
    const auto text = plain_text(exact);
    const auto own = text ? from_utf8(*text) : std::nullopt;
    if (is_text(exact.type) && own) {
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
                                                   : printable(to_utf8(value.text));
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
