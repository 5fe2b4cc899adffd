#include "window/main_handle.h"

#include "window/guard.h"
#include "window/quit.h"

void post_page_changed() { PostMessageA(main_window, page_changed_message, 0, 0); }

void dispatch_message(HWND navigated, MSG& message) {
    if (IsDialogMessageA(navigated, &message))
        return;
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

void pump_one_message() {
    QuitAside quit;
    MSG message{};
    const bool waiting = quit.take(message, nullptr, 0, 0);
    // What other threads send is handled while the queue is asked.
    rethrow_kept();
    if (waiting)
        dispatch_message(main_window, message);
    rethrow_kept();
}
