#include "net/address_block.h"

#include "net/dotted.h"

#include <cstring>

namespace net {
namespace {

constexpr std::size_t first_capacity = 64;

} // namespace

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
    // The old block is gone or the same: only its owner's pointer is to be forgotten.
    static_cast<void>(data_.release());
    data_.reset(static_cast<char*>(larger));
    capacity_ = capacity;
    return true;
}

} // namespace net
