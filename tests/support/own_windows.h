#pragma once
/// The windows that this test itself has open: suites that run beside it may show windows of the same class
/// on the same desktop.
#include "platform/win32.h"

#include <vector>

/// The calling thread's top-level windows of this class, hidden ones too.
std::vector<HWND> own_windows(const char* class_name);
