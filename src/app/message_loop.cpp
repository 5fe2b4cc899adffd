#include "app/message_loop.h"

#include "app/keyboard.h"
#include "error/guard.h"
#include "platform/dispatch.h"

int run_message_loop(HWND main) {
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        error::rethrow_kept();
        if (!handle_key(main, message))
            dispatch_message(main, message);
        error::rethrow_kept();
    }
    error::rethrow_kept();
    // A failed retrieval ends the loop as well, and leaves some other message in the record.
    return message.message == WM_QUIT ? static_cast<int>(message.wParam) : 0;
}
