#pragma once
/// The result of a scan while it grows: dotted addresses, each ended by a zero byte, in one block.
#include "net/memory.h"

#include <cstdint>
#include <memory>

namespace net {

class AddressBlock {
public:
    /// Allocates the first 64 bytes; false without memory. To be called once, before all else.
    bool open();
    /// Appends `address` (network byte order) unless it is there; false without memory.
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
