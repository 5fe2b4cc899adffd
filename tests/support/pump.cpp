#include "support/pump.h"

#include "window/guard.h"
#include "window/top_level.h"

void handle_message(MSG& message) {
    if (main_window == nullptr || !IsDialogMessageA(main_window, &message)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    rethrow_kept();
}
