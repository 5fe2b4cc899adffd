#include "base/exceptions.h"

#include "base/messages.h"
#include "platform/win32.h"

void throw_system_error(std::uint32_t code, const std::string& context) {
    std::string description = context + ": " + system_error_string(code);
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: throw error::EFileNotFoundError(std::move(description));
    case ERROR_ALREADY_EXISTS: throw error::EFileExistsError(std::move(description));
    default: throw error::ESystemError(std::move(description));
    }
}
