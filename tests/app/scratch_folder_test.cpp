#include "support/scratch_folder.h"

#include <fstream>
#include <gmock/gmock.h>

namespace {

TEST(ScratchFolder, IsNobodyElses) {
    const ScratchFolder one;
    const ScratchFolder another;
    std::ofstream(one.path_of("file")) << "one";
    std::ofstream(another.path_of("file")) << "another";
    std::string text;
    std::ifstream(one.path_of("file")) >> text;
    EXPECT_EQ(text, "one");
}

TEST(ScratchFolder, GoesWithWhatIsInIt) {
    std::filesystem::path file;
    {
        const ScratchFolder folder;
        file = folder.path_of("file");
        std::ofstream(file) << "text";
        EXPECT_TRUE(std::filesystem::exists(file));
    }
    EXPECT_FALSE(std::filesystem::exists(file.parent_path()));
}

} // namespace
