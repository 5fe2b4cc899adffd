#pragma once
/// The sample agent under the system's service manager, and the registry that it shares with the program.
#include "platform/win32.h"

#include <string>

namespace e2e {

/// Puts the sample's configurations and values into the registry, and nothing else below its keys.
void seed_registry();
/// A text value below HKEY_LOCAL_MACHINE; empty when it is missing.
std::string read_value(const std::string& key, const std::string& name);
void write_value(const std::string& key, const std::string& name, const std::string& text);
void delete_value(const std::string& key, const std::string& name);
void delete_key(const std::string& key);

/// Writes a spec file of the given lines and registers it, as the only one, under `name`.
void use_spec_file(const std::string& name, const std::string& lines);

/// Installs the sample agent, or changes how the installed one behaves at its next start.
void install_agent(const std::string& options = "");
/// Stops and removes it; does nothing when it is not installed.
void remove_agent();
/// Starts it and waits until it runs.
void start_agent();
/// The service's state, or 0 when there is no such service.
DWORD agent_state();
/// Waits until the service has the state.
void expect_agent(DWORD state);
/// The lines that the agent has logged since it was installed.
std::string agent_notes();

} // namespace e2e
