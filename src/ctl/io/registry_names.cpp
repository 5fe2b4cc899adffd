#include "ctl/io/registry_names.h"

#include "base/text.h"
#include "ctl/io/encoding.h"

namespace ctl {

bool is_same_registry_name(std::string_view one, std::string_view other) {
    return same_ignoring_case(one, other) ||
           (!is_ascii(one) && same_ignoring_case(in_one_case(one), in_one_case(other)));
}

std::size_t RegistryNames::add(std::string_view name, std::size_t line) {
    if (is_ascii(name))
        return names_.add(name, line);
    return names_.add(folded_.emplace_back(in_one_case(to_utf8(name, code_page_))), line);
}

std::size_t RegistryNames::find(std::string_view name) const {
    return is_ascii(name) ? names_.find(name) : names_.find(in_one_case(to_utf8(name, code_page_)));
}

} // namespace ctl
