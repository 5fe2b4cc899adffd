#pragma once
/// Reads the result of a scan.
#include <cstdlib>
#include <string>
#include <vector>

/// The texts of the block, which is freed.
inline std::vector<std::string> servers_in(char* found) {
    if (found == nullptr)
        return {"nothing was returned"};
    std::vector<std::string> servers;
    for (const char* each = found; *each != '\0'; each += servers.back().size() + 1)
        servers.emplace_back(each);
    std::free(found);
    return servers;
}
