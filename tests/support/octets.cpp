#include "support/octets.h"

#include <sstream>
#include <stdexcept>

Octets operator""_octets(const char* text, std::size_t length) {
    std::istringstream words(std::string(text, length));
    Octets octets;
    for (std::string word; words >> word;) {
        std::size_t used = 0;
        const unsigned long value = std::stoul(word, &used, 16);
        if (word.size() != 2 || used != 2)
            throw std::invalid_argument("not an octet: " + word);
        octets.push_back(static_cast<std::uint8_t>(value));
    }
    return octets;
}

Octets operator+(Octets left, const Octets& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Octets repeated(const Octets& unit, std::size_t times) {
    Octets octets;
    octets.reserve(unit.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        octets.insert(octets.end(), unit.begin(), unit.end());
    return octets;
}

Octets octets_of(const std::string& text) { return {text.begin(), text.end()}; }

std::string text_of(const Octets& octets) { return {octets.begin(), octets.end()}; }

Octets first_octets(const Octets& octets, std::size_t count) {
    return {octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(count)};
}
