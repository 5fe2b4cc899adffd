#pragma once
/// The IPv4 networks that this machine is attached to.
#include "net/memory.h"

#include <cstdint>
#include <memory>

namespace net {

/// One address of the machine; addresses in network byte order. A list ends with an entry whose name is
/// empty.
struct Interface {
    char name[32];
    std::uint32_t address;
    std::uint32_t mask;
    std::uint32_t broadcast;
};
using InterfaceList = std::unique_ptr<Interface[], FreeMemory>;

/// The system's table as a list, named "no name(0)", "no name(1)" and so on. Without a table, or without an
/// entry in it, the list is one entry named "dummy" with the broadcast address 255.255.255.255. Null when
/// there is no memory even for that.
InterfaceList list_interfaces();

} // namespace net
