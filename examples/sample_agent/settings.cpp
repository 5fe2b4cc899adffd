#include "settings.h"

#include "platform/win32.h"

namespace {

const char agent_key[] = "SOFTWARE\\Tavrin\\Agent";

std::string parameters_key(const std::string& service) {
    return "SYSTEM\\CurrentControlSet\\Services\\" + service + "\\Parameters";
}

std::string read_text(const std::string& key, const char* name) {
    char text[1024] = "";
    DWORD size = sizeof text;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size) !=
        ERROR_SUCCESS)
        return "";
    return text;
}

DWORD read_number(const std::string& key, const char* name) {
    DWORD number = 0;
    DWORD size = sizeof number;
    RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_DWORD, nullptr, &number, &size);
    return number;
}

bool write_text(const std::string& key, const char* name, const std::string& text) {
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS;
}

bool write_number(const std::string& key, const char* name, DWORD number) {
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_DWORD, &number, sizeof number) ==
           ERROR_SUCCESS;
}

} // namespace

Behaviour read_behaviour(const std::string& service) {
    const std::string key = parameters_key(service);
    Behaviour behaviour;
    if (const std::string notes = read_text(key, "Notes"); !notes.empty())
        behaviour.notes = notes;
    if (const std::string event = read_text(key, "Event"); !event.empty())
        behaviour.event = event;
    behaviour.stop_seconds = read_number(key, "StopSeconds");
    behaviour.refuse_stop = read_number(key, "RefuseStop") != 0;
    behaviour.fail_start = read_number(key, "FailStart") != 0;
    return behaviour;
}

bool write_behaviour(const std::string& service, const Behaviour& behaviour) {
    const std::string key = parameters_key(service);
    return write_text(key, "Notes", behaviour.notes) && write_text(key, "Event", behaviour.event) &&
           write_number(key, "StopSeconds", behaviour.stop_seconds) &&
           write_number(key, "RefuseStop", behaviour.refuse_stop ? 1 : 0) &&
           write_number(key, "FailStart", behaviour.fail_start ? 1 : 0);
}

std::string read_agent_value(const std::string& name) { return read_text(agent_key, name.c_str()); }
