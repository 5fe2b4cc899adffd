#pragma once
/// What the sample agent reads from the registry: the agent's own values, which the configuration tool edits,
/// and how the service is to behave, which `sample_agent install` stores beside the service.
#include <string>

/// How the service behaves and where it notes what happens to it.
struct Behaviour {
    std::string notes = "C:\\tavrin_agent_notes.txt";
    /// The event that the tool's "SignalEvent" entry names.
    std::string event = "Global\\TavrinAgentMeasure";
    /// Seconds from the request to stop until the service has stopped.
    unsigned stop_seconds = 0;
    /// Does not accept the request to stop.
    bool refuse_stop = false;
    /// Ends before it reports to the service manager, so that the start fails.
    bool fail_start = false;
};

/// The behaviour stored for the service; what is missing keeps its default.
Behaviour read_behaviour(const std::string& service);
/// Stores it; false when the registry refuses.
bool write_behaviour(const std::string& service, const Behaviour& behaviour);
/// One of the agent's values below HKEY_LOCAL_MACHINE\SOFTWARE\Tavrin\Agent; empty when it is missing.
std::string read_agent_value(const std::string& name);
