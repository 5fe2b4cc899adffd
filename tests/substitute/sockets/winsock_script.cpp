#include "substitute/sockets/winsock_script.h"

#include "substitute/calls.h"

#include <deque>
#include <map>
#include <mutex>
#include <set>

namespace {

struct Planned {
    int remaining;
    int result;
};

struct Script {
    std::map<std::string, std::vector<Planned>, std::less<>> results;
    std::deque<int> waits;
    std::function<bool()> silence;
    std::map<std::string, std::vector<DWORD>, std::less<>> hosts;
    std::map<std::string, std::shared_future<void>, std::less<>> held;
    std::vector<substitute::Interface> interfaces{{0x0100007F, 0x000000FF}};
    bool machine_interfaces = false;
    bool keep = false;
    std::vector<substitute::Datagram> kept;
};

Script& script() {
    static Script instance;
    return instance;
}

/// Peers on other threads close sockets too.
std::mutex open_guard;
std::set<UINT_PTR>& open_handles() {
    static std::set<UINT_PTR> instance;
    return instance;
}

void reset_script() {
    script() = Script{};
    const std::lock_guard lock(open_guard);
    open_handles().clear();
}
const substitute::ResetHook hook{reset_script};

} // namespace

namespace winsock {

std::optional<int> scripted_result(const char* function) {
    if (!substitute::watched())
        return std::nullopt;
    const auto planned = script().results.find(function);
    if (planned == script().results.end())
        return std::nullopt;
    std::optional<int> result;
    for (Planned& each : planned->second) {
        if (--each.remaining == 0)
            result = each.result;
    }
    return result;
}

void note_select_wait(int seconds) {
    if (substitute::watched())
        substitute::note(script().waits, seconds);
}

bool peers_are_silent() { return substitute::watched() && script().silence && script().silence(); }

void note_opened(UINT_PTR handle) {
    if (!substitute::watched())
        return;
    const std::lock_guard lock(open_guard);
    open_handles().insert(handle);
}

void note_closed(UINT_PTR handle) {
    const std::lock_guard lock(open_guard);
    open_handles().erase(handle);
}

bool keeps_datagram(const substitute::Datagram& datagram) {
    if (!substitute::watched() || !script().keep)
        return false;
    script().kept.push_back(datagram);
    return true;
}

const std::vector<DWORD>* scripted_host(const std::string& name) {
    const auto found = script().hosts.find(name);
    return found == script().hosts.end() ? nullptr : &found->second;
}

std::shared_future<void> held_host(const std::string& name) {
    const auto found = script().held.find(name);
    return found == script().held.end() ? std::shared_future<void>() : found->second;
}

const std::vector<substitute::Interface>* scripted_interfaces() {
    return script().machine_interfaces ? nullptr : &script().interfaces;
}

} // namespace winsock

namespace substitute {

void answer_call(const std::string& function, int nth, int result) {
    script().results[function].push_back({nth, result});
}
void time_out_select(int nth) { answer_call("select", nth, 0); }
void except_select(int nth) { answer_call(winsock::exception_in_select, nth, 1); }
void set_socket_error(int code) { answer_call(winsock::socket_error, 1, code); }
void skip_waits_when(std::function<bool()> silent) { script().silence = std::move(silent); }
std::vector<int> select_waits() { return {script().waits.begin(), script().waits.end()}; }

std::size_t open_sockets() {
    const std::lock_guard lock(open_guard);
    return open_handles().size();
}

void set_host(const std::string& name, std::vector<DWORD> addresses) {
    script().hosts[name] = std::move(addresses);
}

void hold_host(const std::string& name, std::shared_future<void> until) {
    script().held[name] = std::move(until);
}

void set_interfaces(std::vector<Interface> table) {
    script().interfaces = std::move(table);
    script().machine_interfaces = false;
}
void use_machine_interfaces() { script().machine_interfaces = true; }

void keep_datagrams() { script().keep = true; }
std::vector<Datagram> kept_datagrams() { return script().kept; }

} // namespace substitute
