// What happens while a box is open or the agent's service stops.
#include "random/player.h"

namespace random_user {

void Player::play_meanwhile(const Step& step) {
    switch (step.meanwhile) {
    case Meanwhile::nothing: break;
    case Meanwhile::leave:
        note("  meanwhile leaves for another program and comes back");
        desk_.leave_and_return();
        break;
    case Meanwhile::item:
        note("  meanwhile:");
        click_item(step);
        wanted_focus_ = nullptr;
        break;
    case Meanwhile::window:
        note("  meanwhile clicks into the main window");
        desk_.click(desk_.window(), {3, 3});
        break;
    case Meanwhile::shut:
        if (IsWindowEnabled(desk_.window()))
            close_meanwhile("closes the window by its frame", &Desk::shut);
        break;
    case Meanwhile::again: press_again(); break;
    default: play_others(step); break;
    }
}

/// Actions of other processes and of the system, which also reach a disabled window.
void Player::play_others(const Step& step) {
    if (desk_.window() == nullptr || desk_.shows_system_dialog())
        return;
    switch (step.meanwhile) {
    case Meanwhile::select: select_from_outside(step); break;
    case Meanwhile::order:
        close_meanwhile("is told by another process to close the window", &Desk::order_to_close);
        break;
    case Meanwhile::end: ask_for_end_of_session(); break;
    default: break;
    }
}

/// While OK's sequence runs, and after a text that ends the program, it changes nothing.
void Player::close_meanwhile(const char* how, void (Desk::*close)()) {
    note(std::string("  meanwhile ") + how);
    if (end_ == End::none)
        end_ = End::discarded;
    (desk_.*close)();
}

void Player::press_again() {
    if (pressed_.control == nullptr || !IsWindowEnabled(desk_.window()) || end_ != End::none)
        return;
    note("  meanwhile presses it again");
    wanted_focus_ = nullptr;
    desk_.click(pressed_.control, pressed_.where);
}

void Player::select_from_outside(const Step& step) {
    if (handles_.empty())
        return;
    const std::size_t index = step.number % handles_.size();
    const Entry* const entry = model_.items()[index].entry;
    // Whether OK still writes it depends on how far its sequence is.
    if (end_ == End::applied && entry != nullptr && model_.is_changed_by_a_look(*entry))
        return;
    note("  meanwhile another process selects item " + std::to_string(index));
    wanted_focus_ = nullptr;
    desk_.select(handles_[index]);
}

void Player::ask_for_end_of_session() {
    note("  meanwhile the session is to end");
    const bool may_end = desk_.may_session_end();
    if (may_end == (end_ == End::applied)) {
        fault_ =
            may_end ? "the session may end while OK runs" : "the session is kept though nothing is at stake";
    }
}

} // namespace random_user
