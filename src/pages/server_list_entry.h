#pragma once
/// The servers that the agent reports to: items separated by ",", each a host, or a host, ":" and a port. The
/// "Scan" button replaces the list by the servers that answer on the local networks.
#include "pages/selectors.h"

#include <string>

class Settings;

class ServerListEntry final : public TextAndButtonEntry {
public:
    /// `settings` hold the entry and outlives it; its entry "Port" tells where servers listen.
    ServerListEntry(CommonRegKey binding, std::string_view title, std::string_view help_text,
                    const Settings& settings);

private:
    void button_pressed() override;

    const Settings& settings_;
};

/// The list text of a discovery's result: `found_servers` holds one zero-terminated text per server and ends
/// with an empty one.
std::string join_found_servers(const char* found_servers);
