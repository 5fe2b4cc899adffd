#include "ctl/template/present_values.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/io/reg_file.h"
#include "ctl/machine/stored_value.h"

namespace ctl {
namespace {

/// Of a value that is too long to be read as a text.
std::optional<std::string> all_octets(const MachineKey& key, const std::string& name) {
    auto exact = read_exactly(key, name);
    return exact ? std::optional(std::move(exact->octets)) : std::nullopt;
}

WishedValue wished_as(StoredValue stored, const std::string& name) {
    if (stored.octets)
        return {name, std::nullopt, JsonTree::Kind::text, type_name(stored.type), std::move(stored.octets)};
    const std::string type = stored.type == REG_SZ ? "" : type_name(stored.type);
    return {name, to_utf8(stored.text), JsonTree::Kind::text, type};
}

} // namespace

/// A key that is not there has no values; one that may not be read is another matter.
std::optional<WishedValue> present_value(const std::string& key, const std::string& name) {
    try {
        const MachineKey open(from_utf8(key).value_or(""), KEY_QUERY_VALUE);
        const std::string own_name = from_utf8(name).value_or("");
        StoredValue value = look_up(open, own_name);
        if (value.is_too_long)
            value.octets = all_octets(open, own_name);
        return value.is_there ? std::optional(wished_as(std::move(value), name)) : std::nullopt;
    } catch (const Failure& failure) {
        if (failure.code != invalid)
            throw;
        return std::nullopt;
    }
}

} // namespace ctl
