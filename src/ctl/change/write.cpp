#include "ctl/change/write.h"

#include "base/messages.h"
#include "base/text.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/io/system.h"
#include "ctl/machine/service.h"
#include "service/restart.h"
#include "store/common_reg_key.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace ctl {
namespace {

std::string reason(DWORD code) {
    return code == 0 ? std::string()
                     : ": " + to_utf8(system_error_string(code)) + " (" + std::to_string(code) + ")";
}

/// A restart without questions, because the command line has all answers. A note of it is kept from before
/// the service is stopped until the service runs again.
class PrintedRestart final : public RestartDialogue {
public:
    /// `is_pending`: an earlier run left the restart unfinished. `writes`: there are values to write.
    PrintedRestart(const std::string& service, bool is_pending, bool writes)
        : service_(service), name_("service " + to_utf8(service)), is_pending_(is_pending), writes_(writes) {}

    bool agrees_to_restart() override {
        note_restart(service_);
        return true;
    }
    bool agrees_to_start() override { return is_pending_; }
    void while_stopping(const std::function<void()>& step) override {
        say("stopping " + name_, Level::info);
        step();
    }
    /// Only a stopped service is started, so an earlier failure to stop it no longer matters.
    void while_starting(const std::function<void()>& step) override {
        say("starting " + name_, Level::info);
        failure_.clear();
        is_restarted_ = true;
        step();
    }
    void pass() override {}
    void tell(ServiceTrouble trouble, DWORD code) override;

    bool is_restarted() const { return is_restarted_; }
    /// Reports how the restart ended, after the writing.
    ExitCode finish(bool written) const;

private:
    void continue_without_service(DWORD code) const;
    void give_up(DWORD code) const;
    void fail_because(const std::string& why, DWORD code);

    const std::string& service_;
    std::string name_;
    bool is_pending_;
    bool writes_;
    bool is_restarted_ = false;
    std::string failure_;
};

void PrintedRestart::tell(ServiceTrouble trouble, DWORD code) {
    switch (trouble) {
    case ServiceTrouble::unreachable:
    case ServiceTrouble::unknown: continue_without_service(code); break;
    case ServiceTrouble::stop_refused:
        if (writes_)
            give_up(code);
        [[fallthrough]];
    case ServiceTrouble::not_stopped: fail_because("did not stop", code); break;
    case ServiceTrouble::not_started: fail_because("did not start", code); break;
    // Also reported after `not_stopped`.
    case ServiceTrouble::not_restarted:
        if (failure_.empty())
            fail_because("was not restarted", code);
        break;
    }
}

/// Called before anything is written: an exception prevents the writing.
void PrintedRestart::continue_without_service(DWORD code) const {
    if (code == ERROR_ACCESS_DENIED)
        throw Failure{ExitCode::access_denied, "access to the " + name_ + " is denied"};
    if (code != ERROR_SERVICE_DOES_NOT_EXIST)
        throw Failure{ExitCode::failed, "cannot open the " + name_ + reason(code)};
    forget_restart(service_);
    say("there is no " + name_ + " to restart" + reason(code), Level::warning);
}

/// Fails before anything is written, because the service keeps running with the current values.
void PrintedRestart::give_up(DWORD code) const {
    if (!is_pending_)
        forget_restart(service_);
    throw Failure{ExitCode::failed, name_ + " refused to stop" + reason(code) +
                                        "; use \"--restart never\" to write the values without a restart"};
}

void PrintedRestart::fail_because(const std::string& why, DWORD code) {
    is_restarted_ = false;
    failure_ = name_ + " " + why + "; the next set or apply tries again" + reason(code);
}

ExitCode PrintedRestart::finish(bool written) const {
    if (!failure_.empty()) {
        say((written ? "values written, but " : "") + failure_);
        return ExitCode::not_restarted;
    }
    if (is_restarted_)
        forget_restart(service_);
    return ExitCode::success;
}

void write_value(Change& change, const std::string& path, const LocalKey& key) {
    const std::string name = change.value_name();
    if (change.saved) {
        if (write_exactly(key, name, *change.saved) != ERROR_SUCCESS)
            throw "Cannot write key " + name;
    } else if (!change.after) {
        if (RegDeleteValueA(key.get(), name.c_str()) != ERROR_SUCCESS)
            throw "Cannot remove key " + name;
    } else {
        CommonRegKey value(path, name, false);
        value.set_value(*change.after);
        value.write();
    }
    change.is_written = true;
}

void write_values(ConfigurationPlan& plan) {
    const std::string path = plan.configuration->key();
    const LocalKey key(path, KEY_SET_VALUE);
    for (Change& each : plan.changes) {
        if (each.is_needed)
            write_value(each, path, key);
    }
}

/// Configurations that share a service, which is then restarted only once.
struct Group {
    /// Empty if no service is restarted.
    std::string service;
    std::vector<ConfigurationPlan*> members;

    template <typename Is> bool any(Is is) const { return std::any_of(members.begin(), members.end(), is); }
    bool any_written() const {
        return any([](const ConfigurationPlan* each) {
            return std::any_of(each->changes.begin(), each->changes.end(), std::mem_fn(&Change::is_written));
        });
    }
};

Group& group_for(std::vector<Group>& groups, const std::string& service) {
    const auto found = std::find_if(groups.begin(), groups.end(), [&](const Group& each) {
        return !service.empty() && same_ignoring_case(each.service, service);
    });
    return found != groups.end() ? *found : groups.emplace_back(Group{service, {}});
}

/// Contains only configurations with something to do.
std::vector<Group> groups_of(Plan& plan, bool restart) {
    std::vector<Group> groups;
    for (ConfigurationPlan& each : plan) {
        if (each.needs_writing() || (restart && each.restart_is_pending))
            group_for(groups, restart ? each.configuration->service() : "").members.push_back(&each);
    }
    return groups;
}

/// Returns a failure, so that the service can be started again before it is reported.
std::optional<Failure> write_members(const Group& group) {
    try {
        for (ConfigurationPlan* const each : group.members) {
            if (each->needs_writing())
                write_values(*each);
        }
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::string& text) {
        return Failure{ExitCode::failed, to_utf8(text)};
    }
    return std::nullopt;
}

ExitCode write_group(const Group& group, const RestartChoice& choice) {
    std::optional<Failure> failure;
    const std::chrono::seconds limit(choice.timeout_seconds);
    PrintedRestart dialogue(group.service, group.any(std::mem_fn(&ConfigurationPlan::restart_is_pending)),
                            group.any(std::mem_fn(&ConfigurationPlan::needs_writing)));
    if (!group.service.empty())
        wait_until_settled(group.service, limit);
    restart_around({.service_name = group.service,
                    .any = [] { return true; },
                    .write = [&] { failure = write_members(group); },
                    .stop_limit = limit,
                    .start_limit = limit,
                    .manager_access = SC_MANAGER_CONNECT,
                    .service_access = restart_rights},
                   dialogue);
    const ExitCode code = dialogue.finish(group.any_written());
    for (ConfigurationPlan* const each : group.members)
        each->is_restarted = dialogue.is_restarted();
    if (failure)
        throw Failure(*failure);
    return code;
}

ExitCode stopped_by(const Failure& failure, const std::vector<Group>& groups) {
    if (std::none_of(groups.begin(), groups.end(), std::mem_fn(&Group::any_written)))
        throw Failure{failure.code, failure.text + "; nothing was written"};
    say(failure.text + "; values that were already written stay");
    return failure.code;
}

} // namespace

void require_access(const Plan& plan, const RestartChoice& choice) {
    for (const ConfigurationPlan& each : plan) {
        if (!each.needs_writing())
            continue;
        const LocalKey writable(each.configuration->key(), KEY_SET_VALUE);
        if (choice.restart && !each.configuration->service().empty())
            require_restartable(each.configuration->service(), std::chrono::seconds(choice.timeout_seconds));
    }
}

ExitCode write_plan(Plan& plan, const RestartChoice& choice) {
    ExitCode code = ExitCode::success;
    const std::vector<Group> groups = groups_of(plan, choice.restart);
    try {
        const Uninterrupted uninterrupted;
        for (const Group& each : groups) {
            if (uninterrupted.is_over())
                throw Failure{ExitCode::failed, "interrupted by Ctrl+C or the end of the session"};
            code = std::max(code, write_group(each, choice));
        }
    } catch (const Failure& failure) {
        return stopped_by(failure, groups);
    }
    return code;
}

} // namespace ctl
