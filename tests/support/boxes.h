#pragma once
/// Answers the program's message boxes and remembers them, so that no test waits for a person.
#include "platform/win32.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct SeenBox {
    std::string text;
    std::string caption;
    /// Buttons and icon, as in the call; without default button and modality.
    UINT style = 0;
    HWND owner = nullptr;
};

/// While it exists, every message box of this thread is answered at once; a box without a scripted answer is
/// answered with its first button. Create it after the system is clean.
class Boxes {
public:
    Boxes();
    ~Boxes();
    Boxes(const Boxes&) = delete;
    Boxes& operator=(const Boxes&) = delete;

    /// Answers the next box that has no answer yet, with IDYES, IDNO, IDOK or IDCANCEL.
    void answer(int button);
    /// Runs while the next box without such a step is shown, before it is answered.
    void while_shown(std::function<void()> step);
    /// The boxes since this object was made, in order.
    std::vector<SeenBox> seen() const;
    std::vector<std::string> captions() const {
        std::vector<std::string> found;
        for (const SeenBox& box : seen())
            found.push_back(box.caption);
        return found;
    }
    /// Scripted answers that no box has taken.
    std::size_t answers_left() const;

private:
    std::size_t first_ = 0;
};
