#include "support/user.h"

void pick_option(HWND combo_box, int index) {
    SetFocus(combo_box);
    press_key(VK_HOME);
    for (int i = 0; i < index; ++i)
        press_key(VK_DOWN);
}
