#pragma once
/// Lines of a text in memory. A line ends at a line feed; one carriage return right before it belongs to the
/// line end. What follows the last line feed is a line too, unless it is empty.
#include <string_view>

class LineReader {
public:
    /// The text must outlive the reader and the lines read from it.
    explicit LineReader(std::string_view text) : rest_(text) {}

    bool at_end() const { return rest_.empty(); }
    bool next_starts_with(char first) const { return !rest_.empty() && rest_.front() == first; }
    /// The next line without its end; empty at the end of the text.
    std::string_view read();

private:
    std::string_view rest_;
};
