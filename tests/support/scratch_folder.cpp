#include "support/scratch_folder.h"

#include <random>

namespace {

std::filesystem::path candidate() {
    return std::filesystem::temp_directory_path() / ("tavrin_" + std::to_string(std::random_device()()));
}

} // namespace

// Of several processes that try to create a folder, only one succeeds.
ScratchFolder::ScratchFolder() : folder_(candidate()) {
    while (!std::filesystem::create_directory(folder_))
        folder_ = candidate();
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored; // a file that is still open on Windows stays, and its folder with it
    std::filesystem::remove_all(folder_, ignored);
}
