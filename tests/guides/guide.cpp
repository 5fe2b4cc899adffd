#include "guides/guide.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

const std::string fence_mark = "```";

/// Reads a block up to its closing fence.
void read_block(std::istream& guide, Fence& fence, int& line) {
    for (std::string text; std::getline(guide, text) && ++line && text != fence_mark;)
        fence.text += text + "\n";
}

std::string without_marks(const std::string& heading) {
    return heading.substr(heading.find_first_not_of("# "));
}

} // namespace

std::vector<Fence> fences_of(const std::string& name) {
    std::ifstream guide(TAVRIN_GUIDES "/" + name, std::ios::binary);
    EXPECT_TRUE(guide.is_open()) << name;
    std::vector<Fence> fences;
    std::string heading;
    int line = 0;
    for (std::string text; std::getline(guide, text) && ++line;) {
        if (text.starts_with("#"))
            heading = without_marks(text);
        if (!text.starts_with(fence_mark))
            continue;
        fences.push_back({text.substr(fence_mark.size()), "", heading, line});
        read_block(guide, fences.back(), line);
    }
    return fences;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}
