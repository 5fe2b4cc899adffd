#pragma once
/// Names without regard to case, as Windows compares those of keys, services and window classes.
#include <cctype>
#include <string>

namespace substitute {

inline char folded(char character) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
}

inline std::string folded(std::string text) {
    for (char& each : text)
        each = folded(each);
    return text;
}

} // namespace substitute
