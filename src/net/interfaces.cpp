#include "net/interfaces.h"

#include "platform/win32.h"

#include <cstdio>
#include <cstring>

namespace net {
namespace {

using AddressTable = std::unique_ptr<MIB_IPADDRTABLE, FreeMemory>;

AddressTable allocate_table(ULONG size) {
    return AddressTable(static_cast<MIB_IPADDRTABLE*>(resize_memory(nullptr, size)));
}

/// Null if the system refuses or there is no memory.
AddressTable read_table() {
    ULONG size = sizeof(MIB_IPADDRTABLE);
    AddressTable table = allocate_table(size);
    if (table == nullptr)
        return nullptr;
    DWORD code = GetIpAddrTable(table.get(), &size, FALSE);
    if (code == ERROR_INSUFFICIENT_BUFFER) {
        table = allocate_table(size);
        if (table == nullptr)
            return nullptr;
        code = GetIpAddrTable(table.get(), &size, FALSE);
    }
    return code == NO_ERROR ? std::move(table) : nullptr;
}

/// An empty list with room for `count` entries and the final one.
InterfaceList allocate_list(std::size_t count) {
    const std::size_t size = (count + 1) * sizeof(Interface);
    InterfaceList list(static_cast<Interface*>(resize_memory(nullptr, size)));
    if (list != nullptr)
        std::memset(list.get(), 0, size);
    return list;
}

void fill(Interface& entry, std::size_t position, const MIB_IPADDRROW& row) {
    std::snprintf(entry.name, sizeof entry.name, "no name(%d)", static_cast<int>(position));
    entry.address = row.dwAddr;
    entry.mask = row.dwMask;
    entry.broadcast = (entry.address & entry.mask) | ~entry.mask;
}

InterfaceList list_table() {
    const AddressTable table = read_table();
    if (table == nullptr || table->dwNumEntries == 0)
        return nullptr;
    InterfaceList list = allocate_list(table->dwNumEntries);
    for (std::size_t i = 0; list != nullptr && i < table->dwNumEntries; ++i)
        fill(list[i], i, table->table[i]);
    return list;
}

InterfaceList list_dummy() {
    InterfaceList list = allocate_list(1);
    if (list != nullptr) {
        std::snprintf(list[0].name, sizeof list[0].name, "dummy");
        list[0].broadcast = 0xFFFFFFFF;
    }
    return list;
}

} // namespace

InterfaceList list_interfaces() {
    InterfaceList list = list_table();
    return list != nullptr ? std::move(list) : list_dummy();
}

} // namespace net
