#pragma once
#include "peers/servers.h"

/// The bare loop over the servers: sends and receives the same octets in as few calls as possible.
namespace connections_only {

inline Servers servers;

/// Connects to every server in turn. A message box says that all have answered, or which one did not.
void test();

} // namespace connections_only
