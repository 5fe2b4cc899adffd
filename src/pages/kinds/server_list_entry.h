#pragma once
/// The servers that the agent reports to: items separated by ",", each a host, or a host, ":" and a port. The
/// "Scan" button replaces the list by the servers that answer on the local networks.
#include "pages/kinds/selectors.h"

class Settings;

class ServerListEntry final : public TextAndButtonEntry {
public:
    /// `settings` hold the entry and outlives it; its entry "Port" has the port of the servers.
    ServerListEntry(CommonRegKey binding, std::string_view subspec, const Settings& settings);

private:
    void button_pressed() override;

    const Settings& settings_;
};
