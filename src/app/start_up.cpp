#include "app/start_up.h"

#include "app/main_window_procedure.h"
#include "app/message_loop.h"
#include "app/window_layout.h"
#include "error/trace.h"
#include "net/socket.h"
#include "spec/configurations.h"
#include "store/registry_key.h"
#include "window/boxes.h"
#include "window/guard.h"
#include "window/main_handle.h"
#include "window/window_class.h"

#include <map>
#include <memory>
#include <string>

namespace {

constexpr char kClassName[] = "trconfigclass";

void show_fatal(const std::string& text) {
    show_box({.text = text, .caption = "Error!", .style = MB_OK | MB_ICONEXCLAMATION});
}

void register_class(HINSTANCE instance) {
    if (!register_window_class(instance, kClassName, main_window_procedure))
        throw std::string("Window Registration Failed!");
}

void create_main_window(HINSTANCE instance, int show_command) {
    main_window =
        CreateWindowExA(0, kClassName, "Tavrin Configuration", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                        CW_USEDEFAULT, kMinimumWidth, kMinimumHeight, nullptr, nullptr, instance, nullptr);
    rethrow_kept();
    if (main_window == nullptr)
        throw std::string("Window Creation Failed!");
    trace("Created Window\n");
    ShowWindow(main_window, show_command);
    rethrow_kept();
    trace("Showed Window\n");
    UpdateWindow(main_window);
    rethrow_kept();
    trace("Updated Window\n");
}

int start_and_run(HINSTANCE instance, int show_command) {
    register_class(instance);
    load_configurations();
    create_main_window(instance, show_command);
    return run_message_loop(main_window);
}

} // namespace

void load_configurations() {
    std::map<std::string, std::string> spec_files;
    enumerate_values(spec_files, HKEY_LOCAL_MACHINE, "SOFTWARE\\Tavrin\\TRConfig");
    for (const auto& [value_name, path] : spec_files) {
        auto configuration = std::make_unique<Configuration>(value_name, path, false);
        const std::string name = configuration->name;
        configurations.try_emplace(name, std::move(configuration));
        trace("Read configuration %s\n", name.c_str());
    }
}

int run_program(HINSTANCE instance, int show_command) {
    // The steps that block take longer than Windows' patience; a ghost in the window's place would hide what
    // the wait window says.
    DisableProcessWindowsGhosting();
    InitCommonControls();
    CoInitialize(nullptr);
    if (const char* const failure = net_startup()) {
        show_fatal(std::string("Error initializing socket subsystem: ") + failure);
        return 1;
    }
    // Only a thrown text is fatal in words; whatever else is thrown ends the program abnormally, on purpose.
    try {
        return start_and_run(instance, show_command);
    } catch (const std::string& text) {
        // The window is still there. Kept until the user has read it, the text keeps the window from taking
        // orders.
        keep_current();
        show_fatal(text);
        forget_kept();
        return 1;
    }
}
