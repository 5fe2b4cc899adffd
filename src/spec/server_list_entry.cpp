#include "spec/server_list_entry.h"

#include "error/text.h"
#include "net/discovery.h"
#include "service/wait_window.h"
#include "spec/configuration.h"
#include "window/guard.h"
#include "window/main_handle.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr TextAndButton server_box{
    "Unable to create text entry box", "Scan", "Unable to create scan button", 75, 60, 32, 50, 22};

void show_box(const std::string& text, const char* caption, UINT icon) {
    MessageBoxA(main_window, text.c_str(), caption, MB_OK | icon);
    rethrow_kept();
}

/// The servers found, as a list text. A failure is shown and finds none.
std::string scan(std::uint16_t port) {
    const HWND wait_window = open_wait_window("Scanning for Tavrin Servers running at port " +
                                              port_text(port) + ". Please be patient.");
    char* block = nullptr;
    const char* const failure = scan_servers(port, &block);
    const std::unique_ptr<char, void (*)(void*)> owner(block, &std::free);
    if (failure != nullptr) {
        show_box(std::string("Error scanning for Tavrin Servers:\n\n") + failure,
                 "Error scanning for Tavrin Servers", MB_ICONERROR);
    }
    close_wait_window(wait_window);
    return failure == nullptr ? join_found_servers(block) : std::string();
}

} // namespace

ServerListEntry::ServerListEntry(CommonRegKey binding, std::string_view title, std::string_view help_text,
                                 const Configuration& configuration)
    : TextAndButtonEntry(std::move(binding), title, help_text, server_box), configuration_(configuration) {}

void ServerListEntry::button_pressed() {
    const auto port = static_cast<std::uint16_t>(configuration_.integer_by_title("Port"));
    std::string found = scan(port);
    // Deliberately also after a failed scan: its box comes first, this one second.
    if (found.empty()) {
        show_box("No Tavrin Servers found at port " + port_text(port), "No Tavrin Servers Found",
                 MB_ICONINFORMATION);
    } else {
        replace_value(std::move(found));
    }
}

std::string join_found_servers(const char* found_servers) {
    std::string list;
    for (const char* server = found_servers; *server != '\0'; server += std::strlen(server) + 1) {
        if (!list.empty())
            list += ',';
        list += server;
    }
    return list;
}
