#include "pages/kinds/server_list_entry.h"

#include "base/text.h"
#include "net/discovery.h"
#include "pages/settings.h"
#include "window/boxes.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <utility>

namespace {

constexpr TextAndButton server_box{.text_box_failure = "Unable to create text entry box",
                                   .button_text = "Scan",
                                   .button_failure = "Unable to create scan button",
                                   .text_box_narrower = 75,
                                   .button_from_right = 60,
                                   .button_above_bottom = 32,
                                   .button_width = 50,
                                   .button_height = 22};

/// The found servers, as a list text. Shows a failure and then returns no servers.
std::string scan(std::uint16_t port) {
    WaitWindow wait_window("Scanning for Tavrin Servers running at port " + port_text(port) +
                           ". Please be patient.");
    char* block = nullptr;
    const char* const failure = scan_servers(port, &block);
    const std::unique_ptr<char, void (*)(void*)> owner(block, &std::free);
    if (failure != nullptr) {
        wait_window.drop_waiting_input();
        show_box({.owner = main_window,
                  .text = std::string("Error scanning for Tavrin Servers:\n\n") + failure,
                  .caption = "Error scanning for Tavrin Servers",
                  .style = MB_OK | MB_ICONERROR});
    }
    wait_window.close();
    return failure == nullptr ? join_found_servers(block) : std::string();
}

} // namespace

ServerListEntry::ServerListEntry(CommonRegKey binding, std::string_view subspec, const Settings& settings)
    : TextAndButtonEntry(std::move(binding), subspec, server_box), settings_(settings) {}

void ServerListEntry::button_pressed() {
    const auto port = static_cast<std::uint16_t>(settings_.integer_by_title("Port"));
    std::string found = scan(port);
    // Deliberately also after a failed scan: its box comes first, this one second.
    if (found.empty()) {
        show_box({.owner = main_window,
                  .text = "No Tavrin Servers found at port " + port_text(port),
                  .caption = "No Tavrin Servers Found",
                  .style = MB_OK | MB_ICONINFORMATION});
    } else {
        replace_value(std::move(found));
    }
}
