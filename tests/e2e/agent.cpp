#include "e2e/agent.h"

#include "e2e/process.h"
#include "e2e/wait.h"

#include <fstream>
#include <iterator>

namespace e2e {
namespace {

constexpr char service_name[] = "TavrinAgent";
constexpr char sample_key[] = "SOFTWARE\\Tavrin";
constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";

std::string notes_path() { return environment("TEMP") + "\\sample_agent_notes.txt"; }

std::string agent_program() { return "\"" + program_folder() + "\\sample_agent.exe\" "; }

/// The service opened for queries and starts, or null.
class AgentService {
public:
    AgentService()
        : manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT)),
          service(OpenServiceA(manager, service_name, SERVICE_QUERY_STATUS | SERVICE_START)) {}
    ~AgentService() {
        if (service)
            CloseServiceHandle(service);
        CloseServiceHandle(manager);
    }
    AgentService(const AgentService&) = delete;
    AgentService& operator=(const AgentService&) = delete;
    SC_HANDLE get() const { return service; }

private:
    SC_HANDLE manager;
    SC_HANDLE service;
};

} // namespace

void seed_registry() {
    delete_key(sample_key);
    run("regedit.exe /S " + environment("TAVRIN_SEED"));
    if (read_value(list_key, "Agent").empty())
        throw std::runtime_error("the sample did not get into the registry");
}

std::string read_value(const std::string& key, const std::string& name) {
    char text[2048] = "";
    DWORD size = sizeof text;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text, &size))
        return "";
    return text;
}

void write_value(const std::string& key, const std::string& name, const std::string& text) {
    RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), REG_SZ, text.c_str(),
                    static_cast<DWORD>(text.size() + 1));
}

void delete_value(const std::string& key, const std::string& name) {
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str());
}

void delete_key(const std::string& key) { RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str()); }

void use_spec_file(const std::string& name, const std::string& lines) {
    const std::string path = environment("TEMP") + "\\" + name + ".spec";
    std::ofstream file(path);
    file << lines;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
    delete_key(list_key);
    write_value(list_key, name, path);
}

void install_agent(const std::string& options) {
    if (agent_state() == 0)
        DeleteFileA(notes_path().c_str());
    run(agent_program() + "install --notes " + notes_path() + " " + options);
}

void remove_agent() {
    if (agent_state() != 0)
        run(agent_program() + "remove");
    wait_for("the removal of the service", [] { return agent_state() == 0; });
}

void start_agent() {
    const AgentService service;
    if (!StartServiceA(service.get(), 0, nullptr))
        throw std::runtime_error("the sample agent does not start");
    expect_agent(SERVICE_RUNNING);
}

DWORD agent_state() {
    const AgentService service;
    SERVICE_STATUS status = {};
    return QueryServiceStatus(service.get(), &status) ? status.dwCurrentState : 0;
}

void expect_agent(DWORD state) {
    wait_for("the service's state " + std::to_string(state), [&] { return agent_state() == state; });
}

std::string agent_notes() {
    std::ifstream file(notes_path());
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace e2e
