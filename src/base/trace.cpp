#include "base/trace.h"

void trace(const char* format, ...) {
    if (trace_listener == nullptr)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    trace_listener(format, arguments);
    va_end(arguments);
}
