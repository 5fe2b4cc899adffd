#include "e2e/tour_steps/show.h"

#include "e2e/input.h"
#include "e2e/wait.h"
#include "e2e/window.h"

#include <cstdio>
#include <iostream>

namespace e2e {

void say(const std::string& text) { std::cout << "tour: " << text << std::endl; }

void expect(const std::string& what, const std::string& found, const std::string& expected) {
    if (found != expected)
        throw std::runtime_error(what + " is \"" + found + "\" and not \"" + expected + "\"");
}

void expect_end(Tool& tool, DWORD code) {
    expect("the exit code", std::to_string(tool.exit_code()), std::to_string(code));
}

void picture(const std::string& name) {
    static int number = 0;
    char numbered[256];
    std::snprintf(numbered, sizeof numbered, "%02d-%s", ++number, name.c_str());
    std::cout << "picture " << numbered << std::endl;
    std::string line;
    if (!std::getline(std::cin, line) || line != "taken")
        throw std::runtime_error("no picture " + name + " was taken");
}

void picture_of(HWND window, const std::string& name) {
    wait_for("the painting of " + name, [&] { return is_painted(window); });
    picture(name);
}

void picture_of(Tool& tool, const std::string& name) { picture_of(tool.window(), name); }

void answer_box(Tool& tool, const std::string& name, const std::string& caption, const std::string& text,
                int answer) {
    const Box box = tool.box();
    expect("the caption", box.caption, caption);
    expect("the text", box.text, text);
    picture_of(box.window, name);
    box.press(answer);
}

void press_with_picture(HWND button, const std::string& name) {
    hold_down(button);
    const auto is_pressed = [&] {
        hold_on(); // the display may report a move of its own pointer late, which takes the button back
        return (send(button, BM_GETSTATE) & BST_PUSHED) != 0;
    };
    try {
        wait_for("the pressed button", is_pressed, 5);
    } catch (const std::runtime_error&) {
        // A box that had just closed handed over the activity during the press, which broke it off.
        let_go();
        hold_down(button);
        wait_for("the pressed button again", is_pressed);
    }
    picture(name);
    let_go();
}

} // namespace e2e
