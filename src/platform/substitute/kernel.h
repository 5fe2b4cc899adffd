#pragma once
/// Last error, error codes.
#include "platform/substitute/types.h"

inline constexpr DWORD ERROR_SUCCESS = 0;

DWORD GetLastError();
void SetLastError(DWORD code);

DWORD GetCurrentThreadId();
