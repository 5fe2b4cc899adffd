#include "spec/line_reader.h"

std::string_view LineReader::read() {
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    if (end == std::string_view::npos) {
        rest_ = {};
        return line;
    }
    rest_.remove_prefix(end + 1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}
