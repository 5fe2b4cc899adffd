#include "substitute/controls/edit_text.h"

#include <algorithm>

namespace substitute {
namespace {

constexpr std::size_t character_width = 6;

/// Length of the piece of `line` that starts at `start` and goes into one row of `columns` characters.
std::size_t row_length(const std::string& line, std::size_t start, std::size_t columns) {
    if (line.size() - start <= columns)
        return line.size() - start;
    const std::size_t blank = line.rfind(' ', start + columns);
    return blank == std::string::npos || blank < start ? columns : blank - start + 1;
}

int count_rows(const std::string& line, std::size_t columns) {
    int rows = 1;
    for (std::size_t start = row_length(line, 0, columns); start < line.size(); ++rows)
        start += row_length(line, start, columns);
    return rows;
}

} // namespace

int count_lines(const std::string& text, int width) {
    const std::size_t columns =
        width <= 0 ? std::string::npos - text.size()
                   : std::max<std::size_t>(1, static_cast<std::size_t>(width) / character_width);
    int lines = 0;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find("\r\n", start), text.size());
        lines += count_rows(text.substr(start, end - start), columns);
        start = end == text.size() ? text.size() + 1 : end + 2;
    }
    return lines;
}

} // namespace substitute
