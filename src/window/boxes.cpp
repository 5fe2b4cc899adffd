#include "window/boxes.h"

#include "window/guard.h"
#include "window/message_queue.h"

namespace {

int standing = 0;

int show(const BoxDescription& box) {
    return MessageBoxA(box.owner, box.text.c_str(), box.caption.c_str(), box.style);
}

/// A question has no button for this answer. Wine returns it if the box itself receives WM_CLOSE.
bool is_taken_away(const BoxDescription& box, int answer) {
    return (box.style & MB_TYPEMASK) == MB_YESNO && answer == IDCANCEL;
}

int show_until_answered(const BoxDescription& box, bool kept_before) {
    QuitAside quit;
    quit.take_quit();
    int answer = 0;
    do {
        answer = show(box);
    } while (keeping() == kept_before && (quit.take_quit() || is_taken_away(box, answer)));
    return answer;
}

} // namespace

int show_box(const BoxDescription& box) {
    // An exception that is already kept belongs to the caller: the box may be showing it.
    const bool kept_before = keeping();
    const int answer = standing > 0 ? show_until_answered(box, kept_before) : show(box);
    if (!kept_before)
        rethrow_kept();
    return answer;
}

StandingBoxes::StandingBoxes() { ++standing; }
StandingBoxes::~StandingBoxes() { --standing; }
