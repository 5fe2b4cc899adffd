#pragma once
/// A plain reading of decimal numbers, for the fuzzers to compare with.
#include <cstdint>
#include <optional>
#include <string>

/// White space, a sign, digits and nothing else; numbers of more than 32 bits stop at the border. Empty text
/// is 0.
inline std::optional<std::int32_t> plain_number(const std::string& text) {
    const std::string spaces = " \t\n\v\f\r";
    std::size_t at = 0;
    if (text.empty())
        return 0;
    while (at < text.size() && spaces.find(text[at]) != std::string::npos)
        ++at;
    const bool minus = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    if (at == text.size())
        return std::nullopt;
    std::int64_t value = 0;
    for (; at < text.size(); ++at) {
        if (text[at] < '0' || text[at] > '9')
            return std::nullopt;
        value = value * 10 + (text[at] - '0');
        if (value > 2147483647)
            value = minus ? 2147483648 : 2147483647;
    }
    return static_cast<std::int32_t>(minus ? -value : value);
}
