#pragma once
#include "peers/servers.h"

/// The bare loop over the servers: the same octets there and back, in as few calls as will do.
namespace connections_only {

inline Servers servers;

/// Connects to every server in turn and tells in a message box that all have answered, or which did not.
void test();

} // namespace connections_only
