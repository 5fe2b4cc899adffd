#include "peers/servers.h"

#include <cstdlib>

Servers servers_of(int count, char** arguments, int first) {
    if (count < first + 3)
        return {};
    return {arguments[first], std::atoi(arguments[first + 1]),
            static_cast<unsigned short>(std::atoi(arguments[first + 2]))};
}
