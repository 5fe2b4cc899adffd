#include "ctl/template/values.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/registry.h"

namespace ctl {
namespace {

/// A text, of any length and with characters that the code page lacks, if nothing else is stored;
/// octets otherwise.
DesiredValue desired_as(const RegistryValue& stored, const std::string& name) {
    const auto text = plain_text(stored);
    const bool is_text = stored.type == REG_SZ || stored.type == REG_EXPAND_SZ;
    if (!is_text || !text)
        return {name, std::nullopt, JsonTree::Kind::text, type_name(stored.type), stored.octets};
    return {name, *text, JsonTree::Kind::text, stored.type == REG_SZ ? "" : type_name(stored.type)};
}

} // namespace

/// A key that does not exist has no values; a key that may not be read is an error.
std::optional<DesiredValue> present_value(const std::string& key, const std::string& name) {
    try {
        const LocalKey open(from_utf8(key).value_or(""), KEY_QUERY_VALUE);
        const auto stored = read_exactly(open, from_utf8(name).value_or(""));
        return stored ? std::optional(desired_as(*stored, name)) : std::nullopt;
    } catch (const Failure& failure) {
        if (failure.code != ExitCode::invalid)
            throw;
        return std::nullopt;
    }
}

} // namespace ctl
