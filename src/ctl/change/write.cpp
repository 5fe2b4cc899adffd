#include "ctl/change/write.h"

#include "base/messages.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "service/apply.h"
#include "store/common_reg_key.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace ctl {
namespace {

void write_value(Change& change, const std::string& path, const MachineKey& key) {
    const std::string name = change.value_name();
    if (!change.after) {
        if (RegDeleteValueA(key.get(), name.c_str()) != ERROR_SUCCESS)
            throw "Cannot remove key " + name;
    } else {
        CommonRegKey value(HKEY_LOCAL_MACHINE, path, name, false);
        value.set_value(*change.after);
        value.write();
    }
    change.is_written = true;
}

void write_values(ConfigurationChanges& changes) {
    const std::string path = changes.configuration->key();
    const MachineKey key(path, KEY_SET_VALUE);
    for (Change& each : changes.changes) {
        if (each.differs)
            write_value(each, path, key);
    }
}

/// Asks nobody: what is to be done was said on the command line.
class Restarting final : public RestartDialogue {
public:
    Restarting(ConfigurationChanges& changes, Outcome& outcome)
        : changes_(changes), outcome_(outcome), service_(to_utf8(changes.configuration->service())) {}

    bool agrees_to_restart() override { return true; }
    bool agrees_to_start() override { return false; }
    void while_stopping(const std::function<void()>& step) override;
    void while_starting(const std::function<void()>& step) override;
    void pass() override {}
    void tell(ServiceTrouble trouble, DWORD code) override;

    void say_how_it_ended() const {
        if (changes_.is_restarted)
            say("the service " + service_ + " runs again", Level::info);
    }

private:
    void cannot_be_reached(DWORD code) const;
    void fail_because(const std::string& why, DWORD code);

    ConfigurationChanges& changes_;
    Outcome& outcome_;
    std::string service_;
};

void Restarting::while_stopping(const std::function<void()>& step) {
    show_progress("stopping the service " + service_);
    step();
}

void Restarting::while_starting(const std::function<void()>& step) {
    show_progress("starting the service " + service_);
    changes_.is_restarted = true;
    step();
}

void Restarting::tell(ServiceTrouble trouble, DWORD code) {
    switch (trouble) {
    case ServiceTrouble::unreachable:
    case ServiceTrouble::unknown: cannot_be_reached(code); break;
    case ServiceTrouble::not_stopped: fail_because("did not stop", code); break;
    case ServiceTrouble::not_started: fail_because("did not start", code); break;
    // Told also of a service that did not stop, and of one that was stopped before.
    case ServiceTrouble::not_restarted:
        if (outcome_.code == as_wished)
            fail_because("was not restarted", code);
        break;
    }
}

/// Comes before the writing, and what is thrown keeps the values from being written.
void Restarting::cannot_be_reached(DWORD code) const {
    if (code == ERROR_ACCESS_DENIED)
        throw Failure{access_denied, "access to the service " + service_ + " is denied"};
    say("there is no service " + service_ + " to restart: " + to_utf8(system_error_string(code)),
        Level::warning);
}

void Restarting::fail_because(const std::string& why, DWORD code) {
    changes_.is_restarted = false;
    const std::string reason = code == 0 ? "" : ": " + to_utf8(system_error_string(code));
    outcome_ = {not_restarted, "the values are written, but the service " + service_ + " " + why + reason};
}

/// A failure is kept until the service runs again.
std::function<void()> careful_write(ConfigurationChanges& changes, std::optional<Failure>& kept) {
    return [&] {
        try {
            write_values(changes);
        } catch (const Failure& failure) {
            kept = failure;
        } catch (const std::string& text) {
            kept = Failure{failed, to_utf8(text)};
        }
    };
}

void execute_one(ConfigurationChanges& changes, const Execution& execution, Outcome& outcome) {
    std::optional<Failure> kept;
    const std::chrono::seconds limit(execution.timeout_seconds);
    Restarting dialogue(changes, outcome);
    apply({.service_name = execution.restart ? changes.configuration->service() : std::string(),
           .any = [] { return true; },
           .write = careful_write(changes, kept),
           .stop_limit = limit,
           .start_limit = limit},
          dialogue);
    dialogue.say_how_it_ended();
    if (kept)
        throw Failure(*kept);
}

bool any_written(const std::vector<ConfigurationChanges>& all) {
    return std::any_of(all.begin(), all.end(), [](const ConfigurationChanges& each) {
        return std::any_of(each.changes.begin(), each.changes.end(),
                           [](const Change& change) { return change.is_written; });
    });
}

Outcome stopped_by(const Failure& failure, const std::vector<ConfigurationChanges>& all) {
    if (!any_written(all))
        throw Failure{failure.code, failure.text + "; nothing was written"};
    return {failure.code, failure.text + "; what was written before stays written"};
}

} // namespace

void require_write_access(const std::vector<ConfigurationChanges>& all) {
    for (const ConfigurationChanges& each : all) {
        if (each.differ())
            const MachineKey writable(each.configuration->key(), KEY_SET_VALUE);
    }
}

Outcome execute(std::vector<ConfigurationChanges>& all, const Execution& execution) {
    Outcome outcome{as_wished, {}};
    try {
        for (ConfigurationChanges& each : all) {
            if (each.differ())
                execute_one(each, execution, outcome);
        }
    } catch (const Failure& failure) {
        return stopped_by(failure, all);
    }
    return outcome;
}

} // namespace ctl
