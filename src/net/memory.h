#pragma once
/// Memory that is passed on: the receiver frees it with free().
#include <cstddef>
#include <cstdlib>

namespace net {

using ResizeMemory = void* (*)(void* block, std::size_t size);

/// Works like realloc: a null `block` allocates, and after a null result `block` is unchanged. Tests replace
/// it, to let memory run out on any platform. They cannot replace realloc itself, because compilers may call
/// malloc in its place.
inline ResizeMemory resize_memory = std::realloc;

/// For std::unique_ptr.
struct FreeMemory {
    void operator()(void* block) const { std::free(block); }
};

} // namespace net
