#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include "substitute/calls.h"
#include "substitute/kernel/kernel.h"
#include "substitute/sockets/iphelper.h"
#include "substitute/sockets/winsock_script.h"

#include <cstddef>

namespace {

constexpr DWORD not_supported = 50;

using Table = std::vector<substitute::Interface>;

DWORD word_of(const sockaddr* address) {
    return reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr;
}

Table machine_table() {
    Table table;
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return table;
    for (const ifaddrs* each = first; each != nullptr; each = each->ifa_next) {
        if (each->ifa_addr != nullptr && each->ifa_addr->sa_family == AF_INET && (each->ifa_flags & IFF_UP) &&
            each->ifa_netmask != nullptr)
            table.push_back({word_of(each->ifa_addr), word_of(each->ifa_netmask)});
    }
    freeifaddrs(first);
    return table;
}

} // namespace

DWORD GetIpAddrTable(MIB_IPADDRTABLE* table, ULONG* size, BOOL) {
    if (const DWORD code = substitute::failing("GetIpAddrTable", not_supported))
        return code;
    const Table* scripted = winsock::scripted_interfaces();
    const Table rows = scripted != nullptr ? *scripted : machine_table();
    const auto needed =
        static_cast<ULONG>(offsetof(MIB_IPADDRTABLE, table) + rows.size() * sizeof(MIB_IPADDRROW));
    if (*size < needed) {
        *size = needed;
        return ERROR_INSUFFICIENT_BUFFER;
    }
    *size = needed;
    table->dwNumEntries = static_cast<DWORD>(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        table->table[i] = {rows[i].address, static_cast<DWORD>(i + 1), rows[i].mask, 1, 65535, 0, 1};
    return ERROR_SUCCESS;
}
