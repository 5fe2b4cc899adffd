#include "specfile/value_text.h"

#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

namespace {

using Problem = std::optional<std::string>;

using Limits = std::numeric_limits<std::int32_t>;

/// The number in the whole of `text`, in C's notations and of any size; empty if it is not a number.
std::optional<long long> whole_number(const std::string& text) {
    char* end = nullptr;
    const long long number = std::strtoll(text.c_str(), &end, 0);
    // A future C library may accept more than an entry does, such as binary numbers; these are not numbers
    // here.
    const bool reads_alike = scan_int(text) == std::clamp<long long>(number, Limits::min(), Limits::max());
    return reads_alike && end == text.c_str() + text.size() ? std::optional(number) : std::nullopt;
}

constexpr const char* out_of_range = "not between -2147483648 and 2147483647";

bool is_in_range(long long number) { return number >= Limits::min() && number <= Limits::max(); }

bool all_digits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The digits without leading zeros.
std::string without_zeros(std::string_view digits) {
    return std::string(digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1)));
}

/// Digits as a person writes them: zeros in front would make them octal for the agent.
Problem decimal_problem(const std::string& text, std::string_view digits) {
    const std::string sign(text, 0, text.size() - digits.size());
    const std::string plain = without_zeros(digits);
    if (plain != digits)
        return "a leading zero makes it octal for the agent; write " + sign + plain;
    if (sign == "-" && plain == "0")
        return "write 0";
    const bool fits = plain.size() <= 10 && is_in_range(std::strtoll(text.c_str(), nullptr, 10));
    return fits ? Problem() : out_of_range;
}

Problem integer_problem(const std::string& text) {
    if (text.empty())
        return {};
    const std::string_view digits = std::string_view(text).substr(text.starts_with('-') ? 1 : 0);
    if (all_digits(digits))
        return decimal_problem(text, digits);
    const auto number = whole_number(text);
    if (!number)
        return "not a whole number";
    return is_in_range(*number) ? "not in plain decimal digits; write " + std::to_string(*number)
                                : out_of_range;
}

Problem boolean_problem(const std::string& text) {
    const std::string lower = to_lower(text);
    if (lower != "true" && lower != "false")
        return "neither \"true\" nor \"false\"";
    return {};
}

Problem option_problem(const Declaration& declaration, const std::string& text) {
    std::string offered;
    for (const SpecLine& option : declaration.further) {
        if (option.text == text)
            return {};
        offered += (offered.empty() ? "" : ", ") + ('"' + std::string(option.text) + '"');
    }
    return offered.empty() ? "there are no options to choose from" : "not one of the options " + offered;
}

bool is_port(const std::string& text) {
    constexpr long highest = std::numeric_limits<std::uint16_t>::max();
    return text.empty() ||
           (all_digits(text) && text.size() <= 5 && std::strtol(text.c_str(), nullptr, 10) <= highest);
}

/// To the agent, a space is part of the name, and it then finds no such server.
Problem server_problem(const std::string& item) {
    const ServerItem server = split_server_item(item);
    if (item.find_first_of(" \t\r\n") != std::string::npos)
        return "\"" + item + "\" contains a space; separate servers by a comma only";
    if (server.host.empty())
        return "\"" + item + "\" does not name a server";
    if (!server.port_text || is_port(*server.port_text))
        return {};
    return "the port \"" + *server.port_text + "\" of the server \"" + server.host +
           "\" is not a number from 0 to 65535";
}

Problem server_list_problem(const std::string& text) {
    std::vector<std::string> items;
    split_string(items, text, ',', false);
    for (const std::string& item : items) {
        if (auto problem = server_problem(item))
            return problem;
    }
    return {};
}

ValueForm form_of(const Declaration& declaration) {
    return declaration.kind == nullptr ? ValueForm::none : declaration.kind->form;
}

} // namespace

bool means_checked(const std::string& stored) { return to_lower(stored) == "true"; }

std::string checked_text(bool is_checked) { return is_checked ? "true" : "false"; }

std::string integer_text(const std::string& text) {
    const auto number = scan_int(text);
    return number ? std::to_string(*number) : std::string();
}

std::string stored_by_page(const Declaration& declaration, const std::string& stored) {
    switch (form_of(declaration)) {
    case ValueForm::integer: return integer_text(stored);
    case ValueForm::flag: return checked_text(means_checked(stored));
    default: return stored.substr(0, longest_value);
    }
}

std::optional<std::string> value_problem(const Declaration& declaration, const std::string& text) {
    if (text.size() > longest_value)
        return "longer than " + std::to_string(longest_value) + " bytes";
    if (text.find('\0') != std::string::npos)
        return "contains a zero byte";
    switch (form_of(declaration)) {
    case ValueForm::text: return {};
    case ValueForm::integer: return integer_problem(text);
    case ValueForm::flag: return boolean_problem(text);
    case ValueForm::option: return option_problem(declaration, text);
    case ValueForm::server_list: return server_list_problem(text);
    case ValueForm::none: break;
    }
    return "there is no value to set";
}
