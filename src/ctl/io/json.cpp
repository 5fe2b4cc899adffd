#include "ctl/io/json.h"

namespace ctl {

std::string to_text(const Json& json) {
    return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

std::string to_line(const Json& json) {
    return json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n";
}

} // namespace ctl
