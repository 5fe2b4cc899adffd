#pragma once
/// Message texts of the network side, which returns a text on failure and null on success, and the system's
/// texts for its error codes. The buffers are static, because all callers run on one thread.
#include "platform/win32.h"

#include <string>

/// Formats by printf's rules into the next of two alternating buffers and returns it, cut to 255 characters.
/// A message may therefore be an argument of the next one; the call after that overwrites it.
#ifdef __MINGW32__
__attribute__((format(gnu_printf, 1, 2)))
#elif defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
const char*
format_error(const char* format, ...);

/// The system's message for `code` without its line end. If the message is empty, the decimal code; if there
/// is no message, the code and the reason in brackets. Never empty. The next call overwrites it.
const char* system_error_text(DWORD code);

/// The same text as a string; does not change the buffer of `system_error_text`.
std::string system_error_string(DWORD code);
