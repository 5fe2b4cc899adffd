#pragma once
#include "platform/win32.h"

#include <optional>
#include <string>

/// Values are read and written through buffers of this many bytes.
inline constexpr DWORD kValueBufferSize = 1024;

/// A value's data of whatever type, as text up to its first zero byte and cut to 1,023 characters. Nothing
/// when the value is missing or its data is longer than 1,024 bytes.
std::optional<std::string> query_value_text(HKEY key, const char* name);
