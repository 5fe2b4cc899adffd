#pragma once
/// A guide as tests read it: the fenced blocks of a Markdown file.
#include <string>
#include <vector>

struct Fence {
    /// What stands behind the opening fence.
    std::string label;
    /// The lines between the fences, each with its end.
    std::string text;
    /// The heading above it, without number signs.
    std::string heading;
    /// The number of the opening fence's line.
    int line = 0;
};

/// The fenced blocks of docs/`name`, in order. Fails the test when the file cannot be read.
std::vector<Fence> fences_of(const std::string& name);

/// The lines of a text, without their ends.
std::vector<std::string> lines_of(const std::string& text);
