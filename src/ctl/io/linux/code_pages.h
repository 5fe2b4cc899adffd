#pragma once
/// Windows' code pages, and letters in lower and upper case, for a program without Windows.
/// cmake/code_pages.cpp generates the tables from those of the machine that builds the program.
#include <cstdint>
#include <span>

namespace ctl {

/// One octet from 0x80 on, or two of which the first is in the upper half, and their character.
struct CodePageCharacter {
    std::uint16_t octets;
    std::uint16_t character;
};

/// In the order of their octets. Octets below 0x80 are ASCII in every code page and are not listed.
struct CodePage {
    unsigned number;
    std::span<const CodePageCharacter> characters;
};

std::span<const CodePage> code_pages();

/// A lower-case letter beyond ASCII and its upper-case form.
struct Letter {
    std::uint16_t lower;
    std::uint16_t upper;
};

std::span<const Letter> letters(); // in the order of the lower-case letters

} // namespace ctl
