#pragma once
#include "platform/substitute/types.h"

inline constexpr UINT WM_NULL = 0;

BOOL PostThreadMessageA(DWORD thread, UINT message, WPARAM wparam, LPARAM lparam);
