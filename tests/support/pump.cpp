#include "support/pump.h"

#include "window/guard.h"
#include "window/main_handle.h"

void handle_message(MSG& message) {
    if (main_window == nullptr || !IsDialogMessageA(main_window, &message)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    rethrow_kept();
}
