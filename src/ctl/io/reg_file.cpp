#include "ctl/io/reg_file.h"

#include "ctl/io/encoding.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

namespace ctl {
namespace {

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

/// A line end in a text would end the line of the file.
bool is_plain(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char byte) { return static_cast<unsigned char>(byte) < ' '; });
}

std::string formatted(const char* format, unsigned number) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, format, number);
    return buffer;
}

std::string one_line(std::string_view words) {
    std::string line(words);
    std::replace_if(
        line.begin(), line.end(), [](char byte) { return static_cast<unsigned char>(byte) < ' '; }, ' ');
    return line;
}

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

RegFile::RegFile() : text_("Windows Registry Editor Version 5.00\r\n") {}

void RegFile::key(std::string_view path) {
    text_ += "\r\n[HKEY_LOCAL_MACHINE\\";
    text_ += path;
    text_ += "]\r\n";
}

void RegFile::name(std::string_view value_name) {
    text_ += value_name.empty() ? "@" : escaped(value_name);
    text_ += '=';
}

void RegFile::text(std::string_view value_name, std::string_view value) {
    if (!is_plain(value)) {
        raw(value_name, type_text, to_utf16(std::string(value) + '\0'));
        return;
    }
    name(value_name);
    text_ += escaped(value) + "\r\n";
}

/// In words only what reads back as the same octets.
void RegFile::utf16_text(std::string_view value_name, const std::string& octets) {
    const std::string words = from_utf16(octets);
    const std::string text = words.substr(0, words.find('\0'));
    if (to_utf16(text + '\0') == octets) {
        this->text(value_name, text);
    } else {
        raw(value_name, type_text, octets);
    }
}

void RegFile::raw(std::string_view value_name, std::uint32_t type, std::string_view octets) {
    name(value_name);
    if (type == type_number && octets.size() == sizeof type) {
        text_ += "dword:";
        for (auto octet = octets.rbegin(); octet != octets.rend(); ++octet)
            text_ += formatted("%02x", static_cast<unsigned char>(*octet));
        text_ += "\r\n";
    } else {
        hex(type == type_binary ? "hex:" : formatted("hex(%x):", type), octets);
    }
}

void RegFile::hex(std::string_view prefix, std::string_view octets) {
    text_ += prefix;
    for (std::size_t i = 0; i < octets.size(); ++i)
        text_ += formatted(i == 0 ? "%02x" : ",%02x", static_cast<unsigned char>(octets[i]));
    text_ += "\r\n";
}

void RegFile::absent(std::string_view value_name) {
    name(value_name);
    text_ += "-\r\n";
}

void RegFile::comment(std::string_view words) { text_ += "; " + one_line(words) + "\r\n"; }

std::string RegFile::octets() const { return "\xFF\xFE" + to_utf16(text_); }

} // namespace ctl
