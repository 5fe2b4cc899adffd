#include "support/substitute/whole_session.h"

#include "app/main_window_controls.h"
#include "app/start_up.h"
#include "base/exceptions.h"
#include "net/socket.h"
#include "substitute/control.h"
#include "support/conversation.h"
#include "support/loopback.h"
#include "support/registry.h"
#include "support/short_memory.h"
#include "window/top_level.h"

#include <future>

namespace {

constexpr char spec_text[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\nTavrinAgent\n"
                             "!Values\n$Name\nName\nh\nString\n$Domain\nDomain\nh\nString\n$"
                             "Port\nPort\nh\nInteger\n$Flag\nFlag\nh\nBoolean\n"
                             "$Level\nLevel\nh\nOptions\nlow\nhigh\n$Modem\nModem\nh\nCOM\n"
                             "!Actions\n$Folder\nFolder\nh\nDirectory\n$File\nFile\nh\nFile\nlog\n$"
                             "Signal\nTavrinSignal\nh\nSignalEvent\n"
                             "$Forget\nCertificates\nh\nRemoveKey\n$Servers\nServers\nh\nServerList\n"
                             "$Test\n\nh\nConnectionTest\nName\nDomain\nServers\nPort\n";

/// Answers one agent, which may stay connected until the handle closes.
loopback::Handle serve_one(loopback::Listener& listener, const std::string& answer) {
    loopback::Handle agent = listener.accept();
    if (agent.get() != INVALID_SOCKET)
        loopback::send_all(agent.get(), answer);
    return agent;
}

/// Connects to the server, so that it does not wait for a program that never connected.
void wake(const loopback::Listener& listener) {
    const loopback::Handle caller(socket(AF_INET, SOCK_STREAM, 0));
    const sockaddr_in server = loopback::endpoint(loopback::address(), listener.port());
    connect(caller.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server);
}

/// Looks something up in the window without counting these calls, so that none of them is made to fail: a
/// user sees the window even if the system fails.
template <typename Look> auto see(Look look) {
    const substitute::OwnCalls own;
    return look();
}

void push(int id) {
    SendMessageA(see([id] { return control(id); }), BM_CLICK, 0, 0);
}

} // namespace

const std::string accepting_server = text_of(conversation::offer);
const std::string refusing_server = text_of(conversation::refusal);

const std::map<std::string, WholeSession::Values>& WholeSession::values() {
    static const std::map<std::string, Values> values = {
        {"Name", {"web1", "db7"}},          {"Domain", {"old", "old"}},
        {"Flag", {"true", "false"}},        {"Level", {"low", "high"}},
        {"Folder", {"C:\\old", "C:\\new"}}, {"File", {"C:\\old.log", "C:\\new.log"}},
    };
    return values;
}

WholeSession::WholeSession(const Disturbance& disturbance, const std::string& server)
    : look_(disturbance.look) {
    socket_io_timeout = 60;
    net::started = false;
    loopback::Listener listener;
    prepare(listener.port());
    add_steps();
    auto peer = std::async(std::launch::async, [&] { return serve_one(listener, server); });
    if (disturbance.at_delivery)
        substitute::on_delivery([&](const char* function) { disturbance.at_delivery(*this, function); });
    const ShortMemory memory(disturbance.memory, !disturbance.memory_stays_short);
    const std::size_t calls_before = substitute::calls().size();
    substitute::fail_call(disturbance.function, disturbance.call);
    run_program();
    substitute::on_delivery({});
    substitute::fail_call(disturbance.function, 0);
    calls_ = substitute::calls();
    calls_.erase(calls_.begin(), calls_.begin() + static_cast<std::ptrdiff_t>(calls_before));
    memory_requests_ = ShortMemory::sizes().size();
    wake(listener);
    peer.get();
}

WholeSession::~WholeSession() { socket_io_timeout = usual_io_timeout_; }

std::string WholeSession::failed_call() const { return substitute::last_failed_call(); }

void WholeSession::prepare(std::uint16_t server_port) {
    spec_file("Agent", spec_text);
    for (const auto& [name, value] : values())
        set_text(agent_key, name, value.old_text);
    set_text(agent_key, "Port", std::to_string(server_port));
    set_text(agent_key, "Servers", "127.0.0.1");
    make_key(agent_key + "\\Certificates");
    make_key("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    set_text("HARDWARE\\DEVICEMAP\\SERIALCOMM", "one", "COM1");
    substitute::set_service("TavrinAgent", {.stop_time = 1000});
    substitute::choose_next_folder({.clicked = {"C:\\new"}});
    substitute::choose_next_file("C:\\new.log");
    substitute::keep_datagrams();
    for (int pass = 1; pass <= 3; ++pass)
        substitute::time_out_select(pass);
}

void WholeSession::add_steps() {
    visit("Name", [](HWND box) { SetWindowTextA(box, "db7"); });
    for (const char* looked_at : {"Domain", "Port", "Modem"})
        visit(looked_at, [](HWND) {});
    visit("Level", [](HWND list) { SendMessageA(list, CB_SETCURSEL, 1, 0); });
    for (const char* pushed : {"Flag", "Folder", "File", "Signal", "Forget", "Servers"})
        visit(pushed, [](HWND button) { SendMessageA(button, BM_CLICK, 0, 0); });
    step([] { push(test_connection_id); });
    step([] { SetWindowPos(main_window, nullptr, 0, 0, 600, 400, SWP_NOZORDER | SWP_NOMOVE); });
    step([this] {
        ok_pressed_ = true;
        push(ok_id);
    });
    // Tries again, because a failure may keep the window from closing.
    for (int attempt = 0; attempt < 3; ++attempt)
        then([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
}

void WholeSession::step(std::function<void()> act) {
    then(std::move(act));
    if (look_)
        then([this] { look_(*this); });
}

/// Selects the entry and, if its page is shown, acts on the page's last control.
void WholeSession::visit(const char* title, void (*act)(HWND)) {
    step([title] {
        const HWND tree = see([] { return control(tree_id); });
        const HTREEITEM found = see([title] { return item(title); });
        SendMessageA(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(found));
    });
    step([act] {
        const std::vector<HWND> controls = see(page_controls);
        if (!controls.empty())
            act(controls.back());
    });
}

void WholeSession::run_program() {
    try {
        exit_code_ = ::run_program(nullptr, SW_SHOWNORMAL);
    } catch (const error::ESystemError&) {
        exit_code_ = abnormal;
    }
}
