#include "pages/kinds/actions.h"

#include "base/exceptions.h"
#include "window/boxes.h"

#include <utility>

namespace {

constexpr PageControl delete_box{.child = {.window_class = "Button",
                                           .text = "Delete",
                                           .style = BS_AUTOCHECKBOX,
                                           .failure = "Unable to create checkbox delete control"},
                                 .above_bottom = 25,
                                 .height = 15,
                                 .edited = BN_CLICKED};

/// The failure text is deliberately that of the server list's button.
constexpr PageControl execute_button{
    .child = {.window_class = "Button", .text = "Execute", .failure = "Unable to create scan button"},
    .above_bottom = 32,
    .height = 22};

} // namespace

DeleteKey::DeleteKey(DeleteRegKey binding, std::string_view subspec)
    : SingleControlEntry(subspec, delete_box), DeleteRegKey(std::move(binding)) {}

void DeleteKey::showValue() {
    EnableWindow(control(), exists() ? TRUE : FALSE);
    if (exists())
        SendMessageA(control(), BM_SETCHECK, delete_requested() ? BST_CHECKED : BST_UNCHECKED, 0);
}

void DeleteKey::takeValue() {
    if (exists())
        request_delete(SendMessageA(control(), BM_GETCHECK, 0, 0) == BST_CHECKED);
}

SignalEvent::SignalEvent(std::string event_name, std::string_view subspec)
    : SingleControlEntry(subspec, execute_button), event_name_(std::move(event_name)) {}

LRESULT SignalEvent::handleMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (reports_press(message, wparam))
        signal();
    return SingleControlEntry::handleMessage(window, message, wparam, lparam);
}

void SignalEvent::signal() const {
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, event_name_.c_str());
    // Without a handle this fails too and says why. A failure ends the program, so nothing is closed.
    if (!SetEvent(event))
        throw_system_error(GetLastError(), "Couldn't signal event");
    CloseHandle(event);
    show_box({.text = "The action has been taken.", .caption = "Action taken", .style = MB_ICONINFORMATION});
}
