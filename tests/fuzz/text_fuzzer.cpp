/// The text utilities with any text: the input is a separator (1 octet), whether empty pieces stay (1 octet)
/// and the text. Every result must be what the plainest reading of the rules gives.
#include "base/text.h"

#include "base/exceptions.h"
#include "fuzz/input.h"
#include "fuzz/plain_number.h"
#include "specfile/value_text.h"

#include <cstdio>
#include <utility>

namespace {

std::string plain_quote(const std::string& text) {
    static const std::pair<char, const char*> named[] = {{7, "\\a"},   {8, "\\b"},  {9, "\\t"},  {10, "\\n"},
                                                         {11, "\\v"},  {12, "\\f"}, {13, "\\r"}, {34, "\\\""},
                                                         {39, "\\\'"}, {92, "\\\\"}};
    std::string quoted;
    for (const char byte : text) {
        const auto* const name = std::find_if(std::begin(named), std::end(named),
                                              [&](const auto& each) { return each.first == byte; });
        if (name != std::end(named)) {
            quoted += name->second;
        } else if (byte >= 0 && byte < 32) {
            quoted += {'\\', '0', static_cast<char>('0' + byte / 8), static_cast<char>('0' + byte % 8)};
        } else {
            quoted += byte;
        }
    }
    return '"' + quoted + '"';
}

std::vector<std::string> plain_split(const std::string& text, char separator, bool keep_empty) {
    std::vector<std::string> pieces;
    std::string piece;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        if (at < text.size() && text[at] != separator) {
            piece += text[at];
            continue;
        }
        if (keep_empty || !piece.empty())
            pieces.push_back(piece);
        piece.clear();
    }
    return pieces;
}

/// The C library's own conversion, which knows the borders of 64 bits; those of 32 bits lie within.
std::optional<std::int32_t> plain_scan(const std::string& text) {
    long value = 0;
    if (std::sscanf(text.c_str(), "%li", &value) != 1)
        return std::nullopt;
    return static_cast<std::int32_t>(std::clamp(value, -2147483648L, 2147483647L));
}

/// Bit by bit, as the polynomial is divided on paper.
std::uint32_t plain_crc(const std::string& text) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : text) {
        for (int bit = 0; bit < 8; ++bit) {
            const bool one = (sum & 1) != (static_cast<unsigned>(byte) >> bit & 1);
            sum = sum >> 1 ^ (one ? 0xEDB88320 : 0);
        }
    }
    return sum ^ 0xFFFFFFFF;
}

std::string plain_lower(const std::string& text) {
    std::string lower;
    for (const char byte : text)
        lower += static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte);
    return lower;
}

void check_parse(const std::string& text) {
    const std::optional<std::int32_t> expected = plain_number(text);
    try {
        require(parse_int(text) == expected);
    } catch (const error::EParseError& problem) {
        require(!expected && problem.description() == "Error parsing: " + plain_quote(text));
    }
}

/// A page stores the text that it has stored once without a change; and this text is valid input, unless the
/// original was invalid.
void check_values(const std::string& text) {
    for (const char* const type : {"String", "Integer", "Boolean"}) {
        Declaration declaration;
        declaration.kind = find_entry_kind(type);
        const std::string stored = stored_by_page(declaration, text);
        require(stored.size() <= 1023 && stored_by_page(declaration, stored) == stored);
        require(value_problem(declaration, text) || !value_problem(declaration, stored));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Input input(data, size);
    const char separator = static_cast<char>(input.octet());
    const bool keep_empty = input.flag();
    const std::string text = input.text(size);
    std::vector<std::string> pieces = {"left over"};
    split_string(pieces, text, separator, keep_empty);
    require(pieces == plain_split(text, separator, keep_empty));
    require(quote_string(text) == plain_quote(text));
    require(to_lower(text) == plain_lower(text));
    require(scan_int(text) == plain_scan(text));
    require(crc32(text.data(), text.size()) == plain_crc(text));
    check_parse(text);
    check_values(text);
    return 0;
}
