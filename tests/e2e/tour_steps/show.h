#pragma once
/// What every step of the tour is made of: something said, something checked, a picture taken.
#include "e2e/tool.h"

#include <string>

namespace e2e {

/// Prints a line for the person who watches.
void say(const std::string& text);
/// Throws std::runtime_error unless `found` is `expected`.
void expect(const std::string& what, const std::string& found, const std::string& expected);
/// Waits for the program's end and checks its exit code.
void expect_end(Tool& tool, DWORD code);

/// Has a picture of the screen taken and waits until it is.
void picture(const std::string& name);
/// The same once everything in the window is painted.
void picture_of(HWND window, const std::string& name);
void picture_of(Tool& tool, const std::string& name);
/// Checks a message box, takes its picture and answers it.
void answer_box(Tool& tool, const std::string& name, const std::string& caption, const std::string& text,
                int answer);
/// Presses a button as slowly as a person, with a picture of it, so that the program has shown all it drew
/// before.
void press_with_picture(HWND button, const std::string& name);

} // namespace e2e
