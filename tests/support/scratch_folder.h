#pragma once
#include <filesystem>
#include <string>

/// A folder for a test's files that no other test uses, not even the same one in another process. It is
/// removed with its contents.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();
    /// The path of the file or folder `name` in it.
    std::string path_of(const std::string& name) const { return (folder_ / name).string(); }

private:
    std::filesystem::path folder_;
};
