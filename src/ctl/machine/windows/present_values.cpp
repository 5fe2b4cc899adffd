#include "ctl/machine/present_values.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/stored_value.h"

namespace ctl {

/// A key that is not there has no values; one that may not be read is another matter.
std::optional<std::string> present_value(const std::string& key, const std::string& name) {
    try {
        const MachineKey open(from_utf8(key).value_or(""), KEY_QUERY_VALUE);
        const StoredValue value = look_up(open, from_utf8(name).value_or(""));
        if (!value.is_there || value.is_too_long)
            return std::nullopt;
        return to_utf8(value.text);
    } catch (const Failure& failure) {
        if (failure.code != invalid)
            throw;
        return std::nullopt;
    }
}

} // namespace ctl
