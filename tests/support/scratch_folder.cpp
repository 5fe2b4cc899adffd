#include "support/scratch_folder.h"

#include <random>

namespace {

std::filesystem::path candidate() {
    return std::filesystem::temp_directory_path() / ("tavrin_" + std::to_string(std::random_device()()));
}

} // namespace

// Of all who try to make a folder one is told that it made it.
ScratchFolder::ScratchFolder() : folder_(candidate()) {
    while (!std::filesystem::create_directory(folder_))
        folder_ = candidate();
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored; // a file that is still open on Windows stays, and its folder with it
    std::filesystem::remove_all(folder_, ignored);
}
