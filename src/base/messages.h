#pragma once
/// Message texts of the network side, which reports failure by returning a text (null is success), and the
/// system's words for its error codes. The buffers are static: one thread, the user interface's, runs every
/// caller.
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

/// The system's message for `code` without its line end. When the message is empty: the decimal code; when
/// there is none: the code and, in brackets, why. Never empty; overwritten by the next call.
const char* system_error_text(DWORD code);

/// The same text as an own string; leaves the buffer of `system_error_text` alone.
std::string system_error_string(DWORD code);
