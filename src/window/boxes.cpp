#include "window/boxes.h"

#include "window/guard.h"

int show_box(const BoxDescription& box) {
    // What is kept already is the caller's: it may be what the box is about.
    const bool kept_before = keeping();
    const int answer = MessageBoxA(box.owner, box.text.c_str(), box.caption.c_str(), box.style);
    if (!kept_before)
        rethrow_kept();
    return answer;
}
