#pragma once
/// What the fuzzers share: the input read piece by piece, and what must hold.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

inline void require(bool holds) {
    if (!holds)
        __builtin_trap();
}

/// Reads on past the end give zeros and empty texts.
class Input {
public:
    Input(const unsigned char* data, std::size_t size) : next_(data), left_(size) {}

    bool done() const { return left_ == 0; }

    std::uint8_t octet() {
        if (left_ == 0)
            return 0;
        --left_;
        return *next_++;
    }
    bool flag() { return (octet() & 1) != 0; }
    /// Most significant octet first.
    std::uint32_t number(int octets) {
        std::uint32_t value = 0;
        while (octets-- > 0)
            value = value << 8 | octet();
        return value;
    }
    std::string text(std::size_t length) {
        length = std::min(length, left_);
        const std::string taken(reinterpret_cast<const char*>(next_), length);
        next_ += length;
        left_ -= length;
        return taken;
    }
    /// A text of up to 4,095 bytes from few octets of input: its length (2 octets), the length of a pattern
    /// (1 octet) and the pattern, repeated.
    std::string long_text() {
        const std::size_t length = number(2) & 0x0FFF;
        const std::string pattern = text(octet());
        std::string whole;
        while (whole.size() < length)
            whole += pattern.empty() ? std::string(1, '\0') : pattern;
        whole.resize(length);
        return whole;
    }

private:
    const unsigned char* next_;
    std::size_t left_;
};
