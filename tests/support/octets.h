#pragma once
/// Octets as tests write them: "02 01 05"_octets.
#include <cstdint>
#include <string>
#include <vector>

using Octets = std::vector<std::uint8_t>;

/// Pairs of hexadecimal digits; anything else in the text fails the test.
Octets operator""_octets(const char* text, std::size_t length);

Octets operator+(Octets left, const Octets& right);
/// `times` copies of `unit`.
Octets repeated(const Octets& unit, std::size_t times);
Octets octets_of(const std::string& text);
std::string text_of(const Octets& octets);
/// The first `count` octets.
Octets first_octets(const Octets& octets, std::size_t count);
