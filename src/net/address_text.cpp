#include "net/address_text.h"

#include <cstdio>
#include <cstring>

namespace net {
namespace {

constexpr std::size_t first_capacity = 64;

} // namespace

void write_dotted(char (&text)[16], std::uint32_t address) {
    // The octets are in memory in the order in which the dotted form has them.
    unsigned char octet[4];
    std::memcpy(octet, &address, sizeof octet);
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", octet[0], octet[1], octet[2], octet[3]);
}

bool AddressBlock::open() { return grow(first_capacity); }

bool AddressBlock::add(std::uint32_t address) {
    char text[16];
    write_dotted(text, address);
    if (contains(text))
        return true;
    const std::size_t size = std::strlen(text) + 1;
    while (used_ + size > capacity_) {
        if (!grow(capacity_ * 2))
            return false;
    }
    std::memcpy(data_.get() + used_, text, size);
    used_ += size;
    return true;
}

char* AddressBlock::finish() {
    if (used_ == capacity_ && !grow(capacity_ + 1))
        return nullptr;
    data_.get()[used_] = '\0';
    return data_.release();
}

bool AddressBlock::contains(const char* text) const {
    for (std::size_t at = 0; at < used_; at += std::strlen(data_.get() + at) + 1) {
        if (std::strcmp(data_.get() + at, text) == 0)
            return true;
    }
    return false;
}

bool AddressBlock::grow(std::size_t capacity) {
    void* larger = resize_memory(data_.get(), capacity);
    if (larger == nullptr)
        return false;
    // realloc has freed the old block or returned it, so its owner must not free it.
    static_cast<void>(data_.release());
    data_.reset(static_cast<char*>(larger));
    capacity_ = capacity;
    return true;
}

} // namespace net
