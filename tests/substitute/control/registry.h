#pragma once
/// How a test watches the registry and closes keys to the program.
#include "substitute/registry/registry.h"

#include <string>

namespace substitute {

/// How many keys are open; the roots do not count.
int open_keys();

/// From now on, opening or deleting the key fails with ERROR_ACCESS_DENIED. The key must exist.
void deny_key(HKEY root, const std::string& path);

} // namespace substitute
