#pragma once
#include <string>
#include <vector>

/// The machine's serial ports, in byte-wise order; none when the registry does not list them.
std::vector<std::string> serial_ports();
