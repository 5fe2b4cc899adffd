#include "store/value_data.h"

#include <algorithm>

std::optional<std::string> query_value_text(HKEY key, const char* name) {
    char buffer[kValueBufferSize];
    DWORD size = kValueBufferSize;
    if (RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &size) !=
        ERROR_SUCCESS)
        return std::nullopt;
    buffer[std::min(size, kValueBufferSize - 1)] = '\0';
    return buffer;
}
