#include "base/messages.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t buffer_size = 256;

void strip_line_end(char* text) {
    std::size_t length = std::strlen(text);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r'))
        text[--length] = '\0';
}

void describe(DWORD code, char (&buffer)[buffer_size]) {
    const unsigned number = code;
    buffer[0] = '\0';
    if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, buffer,
                       buffer_size, nullptr) == 0) {
        const unsigned reason = GetLastError();
        std::snprintf(buffer, buffer_size, "%u (FormatMessage: %u)", number, reason);
        return;
    }
    buffer[buffer_size - 1] = '\0';
    strip_line_end(buffer);
    if (buffer[0] == '\0')
        std::snprintf(buffer, buffer_size, "%u", number);
}

} // namespace

const char* format_error(const char* format, ...) {
    static char buffers[2][buffer_size];
    static std::size_t next = 0;
    char* const buffer = buffers[next];
    next = 1 - next;
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, buffer_size, format, arguments);
    va_end(arguments);
    return buffer;
}

const char* system_error_text(DWORD code) {
    static char buffer[buffer_size];
    describe(code, buffer);
    return buffer;
}

std::string system_error_string(DWORD code) {
    char buffer[buffer_size];
    describe(code, buffer);
    return buffer;
}
