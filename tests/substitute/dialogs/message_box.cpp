#include "substitute/calls.h"
#include "substitute/control/user.h"
#include "substitute/dialogs/modal_dialog.h"
#include "substitute/kernel/kernel.h"
#include "substitute/windows/messages.h"
#include "substitute/windows/window.h"

#include <deque>
#include <utility>

namespace substitute {
namespace {

struct Script {
    std::deque<int> answers;
    std::deque<std::function<void()>> steps;
    std::vector<ShownBox> shown;
};

Script& script() {
    static Script instance;
    return instance;
}

const ResetHook reset_hook([] { script() = Script{}; });

int first_button(UINT style) {
    const UINT type = style & MB_TYPEMASK;
    return type == MB_YESNO || type == MB_YESNOCANCEL ? IDYES : IDOK;
}

template <typename Value> Value take_next(std::deque<Value>& queued, Value otherwise) {
    if (queued.empty())
        return otherwise;
    Value next = std::move(queued.front());
    queued.pop_front();
    return next;
}

/// No button was pressed.
constexpr int ended_by_quit = 0;

void play_next_step() {
    if (script().steps.empty())
        return;
    take_next<std::function<void()>>(script().steps, [] {})();
    dispatch_all();
}

} // namespace

void answer_next_box(int answer) { script().answers.push_back(answer); }
void while_next_box(std::function<void()> step) { script().steps.push_back(std::move(step)); }
const std::vector<ShownBox>& shown_boxes() { return script().shown; }
void forget_answers() {
    script().answers.clear();
    script().steps.clear();
}
std::size_t answers_left() { return script().answers.size(); }

} // namespace substitute

using namespace substitute;

int MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    if (failing("MessageBoxA", ERROR_NOT_ENOUGH_MEMORY) || (owner != nullptr && window_of(owner) == nullptr))
        return 0;
    const LPCSTR title = caption == nullptr ? "Error" : caption;
    script().shown.push_back({text == nullptr ? "" : text, title, style, owner});
    const std::size_t number = script().shown.size() - 1;
    const ModalDialog box(owner, title);
    if (quit_waits()) {
        script().shown.erase(script().shown.begin() + static_cast<std::ptrdiff_t>(number));
        return ended_by_quit;
    }
    play_next_step();
    return quit_waits() ? ended_by_quit : take_next(script().answers, first_button(style));
}
