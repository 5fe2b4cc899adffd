#include "app/message_loop.h"

#include "app/keyboard.h"
#include "window/guard.h"
#include "window/main_handle.h"

int run_message_loop(HWND main) {
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        rethrow_kept();
        if (!handle_key(main, message))
            dispatch_message(main, message);
        rethrow_kept();
    }
    rethrow_kept();
    // A failed retrieval ends the loop as well, and leaves some other message in the record.
    return message.message == WM_QUIT ? static_cast<int>(message.wParam) : 0;
}
