#include "ctl/io/encoding.h"

#include "ctl/io/linux/code_pages.h"

#include <map>

namespace ctl {
namespace {

constexpr unsigned utf8 = 65001;
constexpr unsigned western_europe = 1252;
constexpr char32_t replacement = 0xFFFD;

const CodePage* find_page(unsigned number) {
    for (const CodePage& page : code_pages()) {
        if (page.number == number)
            return &page;
    }
    return nullptr;
}

unsigned octet(std::string_view text, std::size_t place) { return static_cast<unsigned char>(text[place]); }

void append_utf8(std::string& text, char32_t character) {
    const auto append = [&](char32_t value) { text += static_cast<char>(value); };
    if (character < 0x80)
        return append(character);
    const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    append((0xFF00U >> (more + 1) & 0xFF) | character >> 6 * more);
    for (int rest = more - 1; rest >= 0; --rest)
        append(0x80 | (character >> 6 * rest & 0x3F));
}

/// The number of octets that follow the first one of a character; nothing if no character begins with it.
std::optional<unsigned> octets_after(unsigned first) {
    if (first < 0x80)
        return 0;
    if (first < 0xC2 || first > 0xF4)
        return std::nullopt;
    return first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
}

bool is_shortest(char32_t character, unsigned more) {
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    return character >= smallest[more];
}

bool is_character(char32_t value) { return value < 0xD800 || (value > 0xDFFF && value < 0x110000); }

/// Takes one character off the front of UTF-8. Returns nothing, and takes nothing, if there is none.
std::optional<char32_t> take_utf8(std::string_view& text) {
    const auto more = octets_after(octet(text, 0));
    if (!more || text.size() <= *more)
        return std::nullopt;
    char32_t character = *more == 0 ? octet(text, 0) : octet(text, 0) & (0x3FU >> *more);
    for (unsigned place = 1; place <= *more; ++place) {
        if ((octet(text, place) & 0xC0) != 0x80)
            return std::nullopt;
        character = character << 6 | (octet(text, place) & 0x3F);
    }
    if (!is_shortest(character, *more) || !is_character(character))
        return std::nullopt;
    text.remove_prefix(1 + *more);
    return character;
}

std::optional<char32_t> find_character(const CodePage& page, unsigned octets) {
    const auto found = std::ranges::lower_bound(page.characters, octets, {}, &CodePageCharacter::octets);
    if (found == page.characters.end() || found->octets != octets)
        return std::nullopt;
    return found->character;
}

/// The same for text in a code page, where one or two octets are a character.
std::optional<char32_t> take_character(std::string_view& text, const CodePage& page) {
    const unsigned first = octet(text, 0);
    std::optional<char32_t> character = first < 0x80 ? first : find_character(page, first);
    std::size_t length = 1;
    if (!character && text.size() > 1) {
        character = find_character(page, first << 8 | octet(text, 1));
        length = 2;
    }
    if (character)
        text.remove_prefix(length);
    return character;
}

/// The octets of each character of a code page.
const std::map<char32_t, unsigned>& by_character(const CodePage& page) {
    static std::map<unsigned, std::map<char32_t, unsigned>> pages;
    auto& characters = pages[page.number];
    if (characters.empty()) {
        for (const auto& [octets, character] : page.characters)
            characters.emplace(character, octets);
    }
    return characters;
}

bool append_encoded(std::string& text, char32_t character, const CodePage& page) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return true;
    }
    const auto& characters = by_character(page);
    const auto found = characters.find(character);
    if (found == characters.end())
        return false;
    if (found->second > 0xFF)
        text += static_cast<char>(found->second >> 8);
    text += static_cast<char>(found->second & 0xFF);
    return true;
}

/// Two octets, the lower one first.
char32_t utf16_unit(std::string_view octets, std::size_t place) {
    return octet(octets, place) | octet(octets, place + 1) << 8;
}

/// Takes one character off the front of UTF-16; nothing if there is none.
std::optional<char32_t> take_utf16(std::string_view& octets) {
    const char32_t first = utf16_unit(octets, 0);
    octets.remove_prefix(2);
    if (is_character(first))
        return first;
    const char32_t second = octets.size() > 1 ? utf16_unit(octets, 0) : 0;
    if (first >= 0xDC00 || second < 0xDC00 || second > 0xDFFF)
        return std::nullopt;
    octets.remove_prefix(2);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

char32_t upper_case(char32_t character) {
    if (character < 0x80)
        return character >= 'a' && character <= 'z' ? character - 'a' + 'A' : character;
    const auto found = std::ranges::lower_bound(letters(), character, {}, &Letter::lower);
    return found != letters().end() && found->lower == character ? found->upper : character;
}

void append_utf16(std::string& text, char32_t unit) {
    text += static_cast<char>(unit & 0xFF);
    text += static_cast<char>(unit >> 8);
}

} // namespace

unsigned machine_code_page() { return western_europe; }

bool is_code_page(unsigned code_page) { return code_page == utf8 || find_page(code_page); }

std::string to_utf8(std::string_view text, unsigned code_page) {
    const CodePage* page = find_page(code_page);
    std::string converted;
    while (!text.empty()) {
        const auto character = page ? take_character(text, *page) : take_utf8(text);
        append_utf8(converted, character.value_or(replacement));
        if (!character)
            text.remove_prefix(1);
    }
    return converted;
}

std::optional<std::string> from_utf8(std::string_view text, unsigned code_page) {
    const CodePage* page = find_page(code_page);
    const std::string_view whole = text;
    std::string converted;
    while (!text.empty()) {
        const auto character = take_utf8(text);
        if (!character || (page && !append_encoded(converted, *character, *page)))
            return std::nullopt;
    }
    return page ? converted : std::string(whole);
}

std::string in_one_case(std::string_view text) {
    std::string converted;
    while (!text.empty()) {
        const auto character = take_utf8(text);
        if (!character)
            text.remove_prefix(1);
        append_utf8(converted, upper_case(character.value_or(replacement)));
    }
    return converted;
}

std::string to_utf16(std::string_view text) {
    std::string converted;
    while (!text.empty()) {
        const auto character = take_utf8(text);
        if (!character)
            break;
        if (*character < 0x10000) {
            append_utf16(converted, *character);
        } else {
            append_utf16(converted, 0xD800 + ((*character - 0x10000) >> 10));
            append_utf16(converted, 0xDC00 + ((*character - 0x10000) & 0x3FF));
        }
    }
    return converted;
}

std::string from_utf16(std::string_view octets) {
    std::string converted;
    while (octets.size() > 1) {
        const auto character = take_utf16(octets);
        if (!character)
            break;
        append_utf8(converted, *character);
    }
    return converted;
}

} // namespace ctl
