#include "ctl/machine/data_folder.h"

#include <cstdlib>

namespace ctl {

/// Over the substitute, where a test names a folder of its own.
std::string data_folder() {
    const char* const named = std::getenv("TAVRINCTL_DATA");
    return named != nullptr ? named : "tavrinctl-data";
}

} // namespace ctl
