#include <arpa/inet.h>
#include <netdb.h>

#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/sockets/winsock_calls.h"
#include "substitute/sockets/winsock_script.h"

#include <cstring>

namespace winsock {
namespace {

/// The one answer that, as on Windows, is valid until the next look-up.
struct Answer {
    std::string name;
    std::vector<ULONG> addresses;
    std::vector<char*> list;
    char* no_alias = nullptr;
    hostent entry{};

    hostent* give(const char* asked) {
        name = asked;
        list.clear();
        for (ULONG& each : addresses)
            list.push_back(reinterpret_cast<char*>(&each));
        list.push_back(nullptr);
        entry = {name.data(), &no_alias, AF_INET, 4, list.data()};
        return &entry;
    }
};

} // namespace

ULONG inet_addr(const char* text) {
    // It cannot fail but by its value, so there is nothing to plan.
    substitute::failing("inet_addr", 0);
    return ::inet_addr(text);
}

hostent* gethostbyname(const char* name) {
    if (substitute::failing("gethostbyname", WSAHOST_NOT_FOUND))
        return nullptr;
    if (const auto until = winsock::held_host(name); until.valid()) {
        until.wait();
        SetLastError(WSAHOST_NOT_FOUND);
        return nullptr;
    }
    static thread_local Answer answer;
    if (const auto* scripted = scripted_host(name)) {
        answer.addresses = *scripted;
        return answer.give(name);
    }
    const ::hostent* found = ::gethostbyname(name);
    if (found == nullptr) {
        SetLastError(static_cast<DWORD>(code_of_lookup(h_errno)));
        return nullptr;
    }
    answer.addresses.clear();
    for (char** each = found->h_addr_list; *each != nullptr; ++each) {
        ULONG address = 0;
        std::memcpy(&address, *each, sizeof address);
        answer.addresses.push_back(address);
    }
    return answer.give(name);
}

} // namespace winsock
