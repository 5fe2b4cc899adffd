#pragma once
/// Memory that changes hands: who takes it over frees it with free().
#include <cstddef>
#include <cstdlib>

namespace net {

using ResizeMemory = void* (*)(void* block, std::size_t size);

/// By realloc's rules: a null `block` allocates, a null result means that `block` is as it was. Only tests
/// change it, to let memory run out on any platform; to replace realloc itself the linker would have to
/// replace malloc too, which compilers call in its place, and with it all other memory.
inline ResizeMemory resize_memory = std::realloc;

/// For std::unique_ptr.
struct FreeMemory {
    void operator()(void* block) const { std::free(block); }
};

} // namespace net
