#include "error/messages.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kBufferSize = 256;

void strip_line_end(char* text) {
    std::size_t length = std::strlen(text);
    while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r'))
        text[--length] = '\0';
}

void describe(DWORD code, char (&buffer)[kBufferSize]) {
    const unsigned number = code;
    buffer[0] = '\0';
    if (FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, buffer,
                       kBufferSize, nullptr) == 0) {
        const unsigned reason = GetLastError();
        std::snprintf(buffer, kBufferSize, "%u (FormatMessage: %u)", number, reason);
        return;
    }
    buffer[kBufferSize - 1] = '\0';
    strip_line_end(buffer);
    if (buffer[0] == '\0')
        std::snprintf(buffer, kBufferSize, "%u", number);
}

} // namespace

const char* format_error(const char* format, ...) {
    static char buffers[2][kBufferSize];
    static std::size_t next = 0;
    char* const buffer = buffers[next];
    next = 1 - next;
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, kBufferSize, format, arguments);
    va_end(arguments);
    return buffer;
}

const char* system_error_text(DWORD code) {
    static char buffer[kBufferSize];
    describe(code, buffer);
    return buffer;
}

std::string system_error_string(DWORD code) {
    char buffer[kBufferSize];
    describe(code, buffer);
    return buffer;
}
