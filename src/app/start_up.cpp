#include "app/start_up.h"

#include "app/focus.h"
#include "app/main_window.h"
#include "base/trace.h"
#include "net/socket.h"
#include "pages/configuration.h"
#include "store/registry_key.h"
#include "window/boxes.h"
#include "window/guard.h"
#include "window/message_queue.h"
#include "window/top_level.h"

#include <memory>
#include <string>

namespace {

/// Shows the text even if something has already ended the message loop.
void show_fatal(const std::string& text) {
    const StandingBoxes until_read;
    show_box({.text = text, .caption = "Error!", .style = MB_OK | MB_ICONEXCLAMATION});
}

/// Builds one configuration for each spec file that the registry lists. Throws the text of a fatal error.
void load_configurations() {
    for (const auto& [value_name, path] : listed_spec_files()) {
        auto configuration = std::make_unique<Configuration>(value_name, path, false);
        const std::string name = configuration->name;
        configurations.try_emplace(name, std::move(configuration));
        trace("Read configuration %s\n", name.c_str());
    }
}

/// Handles messages until the quit message and returns its value; 0 when no message can be retrieved. Throws
/// what a window procedure had to keep.
int run_message_loop(HWND main) {
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        rethrow_kept();
        if (!handle_key(main, message))
            dispatch_message(main, message);
        rethrow_kept();
    }
    rethrow_kept();
    // If GetMessageA fails, the loop ends as well, and the record contains another message.
    return message.message == WM_QUIT ? static_cast<int>(message.wParam) : 0;
}

int start_and_run(HINSTANCE instance, int show_command) {
    register_main_window_class(instance);
    load_configurations();
    open_main_window(instance, show_command);
    const KeysBesideBoxes keys;
    return run_message_loop(main_window);
}

} // namespace

int run_program(HINSTANCE instance, int show_command) {
    // Windows replaces a window that does not respond for five seconds with a ghost, which would hide the
    // text of the wait window.
    DisableProcessWindowsGhosting();
    InitCommonControls();
    CoInitialize(nullptr);
    if (const std::string problem = start_sockets(); !problem.empty()) {
        show_fatal(problem);
        return 1;
    }
    // Only texts are caught. It is deliberate that anything else that is thrown ends the program abnormally.
    try {
        return start_and_run(instance, show_command);
    } catch (const std::string& text) {
        // The window still exists. While the text is kept, until the user has read it, the window handles no
        // commands.
        keep_current();
        show_fatal(text);
        forget_kept();
        return 1;
    }
}
