#include "support/pump.h"

#include "error/guard.h"
#include "platform/main_window.h"

void handle_message(MSG& message) {
    if (main_window == nullptr || !IsDialogMessageA(main_window, &message)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    error::rethrow_kept();
}
