#pragma once

/// Identifiers of the main window's controls; assistive and test programs find the controls by them.
inline constexpr int kTreeId = 101;
inline constexpr int kCloseId = 103;
inline constexpr int kOkId = 104;
inline constexpr int kTestConnectionId = 105;
