#include "support/user.h"

#include "substitute/control.h"
#include "support/pump.h"

void press_key(int virtual_key, bool with_shift) { substitute::press(virtual_key, with_shift); }
void type_text(const std::string& text) { substitute::type(text); }
void click_on(HWND window) { substitute::click(window); }
void click_at(HWND window, POINT where) { substitute::click(window, where); }

UserSteps::UserSteps() = default;
UserSteps::~UserSteps() { substitute::forget_steps(); }
void UserSteps::then(std::function<void()> step) { substitute::then(std::move(step)); }
std::size_t UserSteps::left() const { return substitute::steps_left(); }

void pump_messages() {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        handle_message(message);
}
