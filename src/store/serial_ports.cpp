#include "store/serial_ports.h"

#include "store/registry_key.h"

#include <algorithm>
#include <iterator>
#include <map>

std::vector<std::string> serial_ports() {
    std::map<std::string, std::string> devices;
    try {
        enumerate_values(devices, HKEY_LOCAL_MACHINE, R"(HARDWARE\DEVICEMAP\SERIALCOMM)");
    } catch (const std::string&) {
        return {};
    }
    std::vector<std::string> ports;
    std::transform(devices.begin(), devices.end(), std::back_inserter(ports),
                   [](const auto& device) { return device.second; });
    std::sort(ports.begin(), ports.end());
    return ports;
}
