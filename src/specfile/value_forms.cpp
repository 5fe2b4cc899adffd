#include "specfile/value_forms.h"

#include "base/text.h"

bool means_checked(const std::string& stored) { return to_lower(stored) == "true"; }

std::string checked_text(bool is_checked) { return is_checked ? "true" : "false"; }

std::string integer_text(const std::string& text) {
    const auto number = scan_int(text);
    return number ? std::to_string(*number) : std::string();
}
