#pragma once
/// Trace points of start-up and parser. A release discards them; a debugger or a test may listen.
#include <cstdarg>

using TraceListener = void (*)(const char* format, std::va_list arguments);

/// Receives every trace; null (the default) discards them.
inline TraceListener trace_listener = nullptr;

/// printf rules.
#ifdef __GNUC__
__attribute__((format(printf, 1, 2)))
#endif
void trace(const char* format, ...);
