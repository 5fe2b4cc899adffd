#pragma once
/// Error codes of windows and messages.
#include "substitute/types.h"

inline constexpr LONG ERROR_MOD_NOT_FOUND = 126;
inline constexpr LONG ERROR_INVALID_WINDOW_HANDLE = 1400;
inline constexpr LONG ERROR_TLW_WITH_WSCHILD = 1406;
inline constexpr LONG ERROR_CANNOT_FIND_WND_CLASS = 1407;
inline constexpr LONG ERROR_CLASS_ALREADY_EXISTS = 1410;
inline constexpr LONG ERROR_CLASS_DOES_NOT_EXIST = 1411;
inline constexpr LONG ERROR_CLASS_HAS_WINDOWS = 1412;
inline constexpr LONG ERROR_INVALID_INDEX = 1413;
inline constexpr LONG ERROR_CONTROL_ID_NOT_FOUND = 1421;
inline constexpr LONG ERROR_INVALID_THREAD_ID = 1444;
inline constexpr LONG ERROR_RESOURCE_NAME_NOT_FOUND = 1814;
