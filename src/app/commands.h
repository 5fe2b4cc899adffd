#pragma once
#include "platform/win32.h"

/// OK: writes the changes of every configuration, with the service steps around it, and closes the window.
void apply_and_close(HWND window);

/// Test Connection: gathers the four parameters from the entries that the configuration's connection test
/// names and runs the test. Does nothing unless a node of a configuration that offers the test is selected.
/// Throws a text when an entry is missing, holds no text value or, for the port, no decimal number.
void test_connection();
