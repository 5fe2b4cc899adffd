#include "ctl/change/saved_values.h"

#include "ctl/failure.h"
#include "ctl/io/encoding.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace ctl {
namespace {

constexpr std::string_view mark = "\xFF\xFE";
constexpr std::string_view first_line = "Windows Registry Editor Version 5.00";
constexpr std::string_view hive = "[HKEY_LOCAL_MACHINE\\";

/// Removes the beginning from the text, if it begins so.
bool take(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning))
        return false;
    text.remove_prefix(beginning.size());
    return true;
}

std::optional<std::uint32_t> take_hex(std::string_view& text, std::size_t most_digits) {
    std::uint32_t number = 0;
    const char* const begin = text.data();
    const auto [end, error] = std::from_chars(begin, begin + std::min(text.size(), most_digits), number, 16);
    if (error != std::errc())
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - begin));
    return number;
}

/// A text in quotes, with what is behind it left over.
std::optional<std::string> take_quoted(std::string_view& text) {
    std::string quoted;
    if (!take(text, "\""))
        return std::nullopt;
    while (!text.empty() && text.front() != '"') {
        if (text.front() == '\\')
            text.remove_prefix(1);
        if (text.empty())
            return std::nullopt;
        quoted += text.front();
        text.remove_prefix(1);
    }
    return take(text, "\"") ? std::optional(quoted) : std::nullopt;
}

std::optional<std::string> octets_of(std::string_view text) {
    std::string octets;
    while (!text.empty()) {
        const auto octet = take_hex(text, 2);
        if (!octet || (!text.empty() && (!take(text, ",") || text.empty())))
            return std::nullopt;
        octets += static_cast<char>(*octet);
    }
    return octets;
}

std::optional<ExactValue> number(std::string_view text) {
    const auto value = take_hex(text, 8);
    if (!value || !text.empty())
        return std::nullopt;
    std::string octets;
    for (unsigned shift = 0; shift < 32; shift += 8)
        octets += static_cast<char>(*value >> shift & 0xFF);
    return ExactValue{REG_DWORD, octets};
}

std::optional<ExactValue> typed(DWORD type, std::string_view text) {
    auto octets = octets_of(text);
    return octets ? std::optional(ExactValue{type, std::move(*octets)}) : std::nullopt;
}

std::optional<ExactValue> data_of(std::string_view text) {
    if (take(text, "dword:"))
        return number(text);
    if (take(text, "hex:"))
        return typed(REG_BINARY, text);
    if (take(text, "hex(")) {
        const auto type = take_hex(text, 8);
        return type && take(text, "):") ? typed(*type, text) : std::nullopt;
    }
    const auto words = take_quoted(text);
    return words && text.empty() ? std::optional(ExactValue{REG_SZ, to_utf16(*words + '\0')}) : std::nullopt;
}

/// Goes through the lines.
class Reading {
public:
    explicit Reading(std::string text) : text_(std::move(text)), left_(text_) {}

    std::vector<SavedValue> read() {
        if (next_line() != first_line)
            refuse();
        while (!left_.empty())
            take_line(next_line());
        return std::move(values_);
    }

private:
    std::string_view next_line() {
        ++line_;
        const std::size_t end = left_.find("\r\n");
        const std::string_view line = left_.substr(0, end);
        left_.remove_prefix(end == std::string_view::npos ? left_.size() : end + 2);
        return line;
    }

    void take_line(std::string_view line) {
        if (line.empty())
            return;
        if (take(line, hive) && line.ends_with(']')) {
            key_ = line.substr(0, line.size() - 1);
        } else {
            take_value(line);
        }
    }

    void take_value(std::string_view line) {
        const auto name = take(line, "@") ? std::optional(std::string()) : take_quoted(line);
        if (!name || key_.empty() || !take(line, "="))
            refuse();
        std::optional<ExactValue> value;
        if (line != "-" && !(value = data_of(line)))
            refuse();
        values_.push_back({key_, *name, std::move(value)});
    }

    [[noreturn]] void refuse() const {
        throw Failure{invalid, "line " + std::to_string(line_) + " was not written by tavrinctl"};
    }

    std::string text_;
    std::string_view left_;
    std::size_t line_ = 0;
    std::string key_;
    std::vector<SavedValue> values_;
};

} // namespace

std::vector<SavedValue> read_backup(std::string_view octets) {
    if (!octets.starts_with(mark))
        throw Failure{invalid, "not a backup of tavrinctl: it is not in UTF-16"};
    return Reading(from_utf16(octets.substr(mark.size()))).read();
}

} // namespace ctl
