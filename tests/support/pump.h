#pragma once
#include "platform/win32.h"

/// Handles one message as the program's loop does. Throws what a window procedure kept.
void handle_message(MSG& message);
