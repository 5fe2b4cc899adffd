#pragma once
/// Addresses (network byte order) as text: the dotted form of one, and a scan's list of them.
#include "net/memory.h"

#include <cstdint>
#include <memory>

namespace net {

/// Writes the dotted form, which has at most 15 characters.
void write_dotted(char (&text)[16], std::uint32_t address);

/// The growing result of a scan: dotted addresses, each ended by a zero byte, in one block.
class AddressBlock {
public:
    /// Allocates the first 64 bytes; false without memory. Must be called once, before everything else.
    bool open();
    /// Appends `address` unless the list has it; false without memory.
    bool add(std::uint32_t address);
    /// Ends the list with one more zero byte and hands it over, to be freed with free(); null without memory.
    char* finish();

private:
    bool contains(const char* text) const;
    bool grow(std::size_t capacity);

    std::unique_ptr<char, FreeMemory> data_;
    std::size_t used_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace net
