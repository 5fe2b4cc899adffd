/// Scans the networks of the namespace that it runs in and prints who answered, an address a line.
/// usage: scan_networks PORT PREFIX   (it refuses to scan where an address begins with neither PREFIX nor
/// 127.)
#include "net/discovery.h"
#include "net/socket.h"
#include "support/scan_result.h"
#include "support/system.h"

#include <cstdio>
#include <cstring>

namespace {

std::string dotted(std::uint32_t address) {
    unsigned char octet[4];
    std::memcpy(octet, &address, sizeof octet);
    char text[16];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", octet[0], octet[1], octet[2], octet[3]);
    return text;
}

bool only_own_networks(const std::string& prefix) {
    const net::InterfaceList list = net::list_interfaces();
    for (const net::Interface* each = list.get(); each->name[0] != '\0'; ++each) {
        const std::string address = dotted(each->address);
        std::printf("network: %s %s\n", each->name, address.c_str());
        if (!address.starts_with(prefix) && !address.starts_with("127.") &&
            std::strcmp(each->name, "dummy") != 0)
            return false;
    }
    return true;
}

int report(const char* message) {
    std::printf("failed: %s\n", message);
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3)
        return report("usage: scan_networks PORT PREFIX");
    see_machine_interfaces();
    if (const char* message = net_startup())
        return report(message);
    if (!only_own_networks(arguments[2]))
        return report("refused to scan a real network");
    char* found = nullptr;
    if (const char* message = scan_servers(static_cast<std::uint16_t>(std::atoi(arguments[1])), &found))
        return report(message);
    for (const std::string& each : servers_in(found))
        std::printf("server: %s\n", each.c_str());
    std::printf("end\n");
    return 0;
}
