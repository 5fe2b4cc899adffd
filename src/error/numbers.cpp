#include "error/exceptions.h"
#include "error/text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();

bool is_space(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

/// The digit's value; 36 for a byte that is a digit in no base.
int digit_value(char byte) {
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    if (byte >= 'a' && byte <= 'z')
        return byte - 'a' + 10;
    if (byte >= 'A' && byte <= 'Z')
        return byte - 'A' + 10;
    return 36;
}

/// A cursor over the text of one "%i" conversion.
struct Scanner {
    const char* next; // the text ends with a zero byte, which fits nowhere

    void skip_space() {
        while (is_space(*next))
            ++next;
    }
    bool take_minus() {
        const bool minus = *next == '-';
        if (minus || *next == '+')
            ++next;
        return minus;
    }
    /// "0x" is taken even when no digit follows: scanf has consumed it by then, and the number is 0.
    int take_base() {
        if (next[0] != '0')
            return 10;
        if (next[1] != 'x' && next[1] != 'X')
            return 8;
        next += 2;
        return 16;
    }
    std::int64_t take_digits(int base, bool minus) {
        const std::int64_t sign = minus ? -1 : 1;
        std::int64_t value = 0;
        for (; digit_value(*next) < base; ++next)
            value = std::clamp(value * base + sign * digit_value(*next), kLowest, kHighest);
        return value;
    }
};

} // namespace

std::int32_t parse_int(const std::string& text) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (end != text.c_str() + text.size())
        throw error::EParseError("Error parsing: " + quote_string(text));
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, kLowest, kHighest));
}

std::optional<std::int32_t> scan_int(const std::string& text) {
    Scanner scanner{text.c_str()};
    scanner.skip_space();
    const bool minus = scanner.take_minus();
    if (digit_value(*scanner.next) > 9)
        return std::nullopt;
    const int base = scanner.take_base();
    return static_cast<std::int32_t>(scanner.take_digits(base, minus));
}
