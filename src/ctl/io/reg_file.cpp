#include "ctl/io/reg_file.h"

#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/encoding.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace ctl {
namespace {

constexpr std::string_view mark = "\xFF\xFE";
constexpr std::string_view first_line = "Windows Registry Editor Version 5.00";
constexpr std::string_view hive = "[HKEY_LOCAL_MACHINE\\";
constexpr const char* type_names[] = {"REG_NONE",
                                      "REG_SZ",
                                      "REG_EXPAND_SZ",
                                      "REG_BINARY",
                                      "REG_DWORD",
                                      "REG_DWORD_BIG_ENDIAN",
                                      "REG_LINK",
                                      "REG_MULTI_SZ",
                                      "REG_RESOURCE_LIST",
                                      "REG_FULL_RESOURCE_DESCRIPTOR",
                                      "REG_RESOURCE_REQUIREMENTS_LIST",
                                      "REG_QWORD"};
constexpr std::string_view without_name = "type ";
// The build without Windows does not have Windows' names for these.
constexpr std::uint32_t type_text = 1;
constexpr std::uint32_t type_binary = 3;
constexpr std::uint32_t type_number = 4;

std::string escaped(std::string_view text) {
    std::string quoted = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\')
            quoted += '\\';
        quoted += byte;
    }
    return quoted + '"';
}

bool is_control(char byte) { return static_cast<unsigned char>(byte) < ' '; }

/// Removes `beginning` from the text; false if the text does not begin with it.
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

std::optional<RegistryValue> number_of(std::string_view text) {
    const auto value = take_hex(text, 8);
    if (!value || !text.empty())
        return std::nullopt;
    std::string octets;
    for (unsigned shift = 0; shift < 32; shift += 8)
        octets += static_cast<char>(*value >> shift & 0xFF);
    return RegistryValue{type_number, octets};
}

std::optional<RegistryValue> octets_of(std::uint32_t type, std::string_view text) {
    RegistryValue value{type, {}};
    while (!text.empty()) {
        const auto octet = take_hex(text, 2);
        if (!octet || (!text.empty() && (!take(text, ",") || text.empty())))
            return std::nullopt;
        value.octets += static_cast<char>(*octet);
    }
    return value;
}

std::optional<RegistryValue> value_of(std::string_view text) {
    if (take(text, "dword:"))
        return number_of(text);
    if (take(text, "hex:"))
        return octets_of(type_binary, text);
    if (take(text, "hex(")) {
        const auto type = take_hex(text, 8);
        return type && take(text, "):") ? octets_of(*type, text) : std::nullopt;
    }
    const auto words = take_quoted(text);
    if (!words || !text.empty())
        return std::nullopt;
    return RegistryValue{type_text, to_utf16(*words + '\0')};
}

class RegFileReader {
public:
    explicit RegFileReader(std::string_view text) : left_(text) {}

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
        const auto value = value_of(line);
        if (!value && line != "-")
            refuse();
        values_.push_back({key_, *name, value});
    }

    [[noreturn]] void refuse() const {
        throw Failure{ExitCode::invalid, "line " + std::to_string(line_) + " was not written by tavrinctl"};
    }

    std::string_view left_;
    std::size_t line_ = 0;
    std::string key_;
    std::vector<SavedValue> values_;
};

} // namespace

std::string type_name(std::uint32_t type) {
    return type < std::size(type_names) ? type_names[type] : std::string(without_name) + std::to_string(type);
}

std::optional<std::uint32_t> type_named(const std::string& name) {
    const auto* const found = std::find(std::begin(type_names), std::end(type_names), name);
    if (found != std::end(type_names))
        return static_cast<std::uint32_t>(found - std::begin(type_names));
    std::uint32_t type = 0;
    const char* const end = name.data() + name.size();
    const bool is_number = name.starts_with(without_name) &&
                           std::from_chars(name.data() + without_name.size(), end, type).ptr == end;
    return is_number && type_name(type) == name ? std::optional(type) : std::nullopt;
}

RegFile::RegFile() : text_(std::string(first_line) + "\r\n") {}

void RegFile::key(std::string_view path) {
    text_ += "\r\n" + std::string(hive) + std::string(path) + "]\r\n";
}

void RegFile::name(std::string_view value_name) {
    text_ += (value_name.empty() ? "@" : escaped(value_name)) + "=";
}

std::optional<std::string> plain_text(const RegistryValue& value) {
    const std::string words = from_utf16(value.octets);
    std::string text = words.substr(0, words.find('\0'));
    return to_utf16(text + '\0') == value.octets ? std::optional(std::move(text)) : std::nullopt;
}

/// A line end in a text would end the line of the file.
void RegFile::text(std::string_view value_name, std::string_view value) {
    if (std::any_of(value.begin(), value.end(), is_control)) {
        raw(value_name, {type_text, to_utf16(std::string(value) + '\0')});
        return;
    }
    name(value_name);
    text_ += escaped(value) + "\r\n";
}

void RegFile::value(std::string_view value_name, const RegistryValue& value) {
    if (const auto plain = plain_text(value); plain && value.type == type_text) {
        text(value_name, *plain);
    } else {
        raw(value_name, value);
    }
}

void RegFile::raw(std::string_view value_name, const RegistryValue& value) {
    name(value_name);
    const bool is_number = value.type == type_number && value.octets.size() == sizeof value.type;
    const std::string octets =
        is_number ? std::string(value.octets.rbegin(), value.octets.rend()) : value.octets;
    text_ += is_number ? "dword:" : value.type == type_binary ? "hex:" : formatted("hex(%x):", value.type);
    for (std::size_t i = 0; i < octets.size(); ++i)
        text_ += formatted(i == 0 || is_number ? "%02x" : ",%02x", static_cast<unsigned char>(octets[i]));
    text_ += "\r\n";
}

void RegFile::absent(std::string_view value_name) {
    name(value_name);
    text_ += "-\r\n";
}

void RegFile::comment(std::string_view words) {
    std::string line(words);
    std::replace_if(line.begin(), line.end(), is_control, ' ');
    text_ += "; " + line + "\r\n";
}

std::string RegFile::octets() const { return std::string(mark) + to_utf16(text_); }

std::vector<SavedValue> read_reg_file(std::string_view octets) {
    if (!octets.starts_with(mark))
        throw Failure{ExitCode::invalid, "not a backup of tavrinctl: it is not in UTF-16"};
    const std::string text = from_utf16(octets.substr(mark.size()));
    return RegFileReader(text).read();
}

} // namespace ctl
