#include "spec/spec_file.h"

#include <cstdio>
#include <memory>

/// Binary, since text mode would end the file at a Ctrl-Z on one system and not on the other. The C library's
/// files, since a stream would bring the whole of the locales into the program.
std::optional<std::string> read_spec_file(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr)
        return std::nullopt;
    std::string bytes;
    char chunk[65536];
    while (const std::size_t size = std::fread(chunk, 1, sizeof chunk, file.get()))
        bytes.append(chunk, size);
    // Some systems open a directory and then refuse to read it.
    return std::ferror(file.get()) != 0 ? std::nullopt : std::optional(std::move(bytes));
}
