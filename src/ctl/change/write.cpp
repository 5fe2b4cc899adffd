#include "ctl/change/write.h"

#include "base/text.h"
#include "ctl/change/printed_restart.h"
#include "ctl/change/uninterrupted.h"
#include "ctl/failure.h"
#include "ctl/io/console.h"
#include "ctl/io/encoding.h"
#include "ctl/machine/service.h"
#include "service/restart.h"
#include "store/common_reg_key.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace ctl {
namespace {

void write_value(Change& change, const std::string& path, const MachineKey& key) {
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

void write_values(ConfigurationChanges& changes) {
    const std::string path = changes.configuration->key();
    const MachineKey key(path, KEY_SET_VALUE);
    for (Change& each : changes.changes) {
        if (each.differs)
            write_value(each, path, key);
    }
}

/// Configurations that share a service, so that it is restarted once.
struct Group {
    /// Empty: nothing is restarted.
    std::string service;
    std::vector<ConfigurationChanges*> members;

    bool differs() const {
        return std::any_of(members.begin(), members.end(), [](const auto* each) { return each->differ(); });
    }
    bool is_pending() const {
        return std::any_of(members.begin(), members.end(),
                           [](const auto* each) { return each->restart_is_pending; });
    }
    bool any_written() const {
        return std::any_of(members.begin(), members.end(), [](const auto* each) {
            return std::any_of(each->changes.begin(), each->changes.end(),
                               [](const Change& change) { return change.is_written; });
        });
    }
};

Group& group_for(std::vector<Group>& groups, const std::string& service) {
    const auto found = std::find_if(groups.begin(), groups.end(), [&](const Group& each) {
        return !service.empty() && same_ignoring_case(each.service, service);
    });
    return found != groups.end() ? *found : groups.emplace_back(Group{service, {}});
}

/// Only of configurations with something to do.
std::vector<Group> groups_of(std::vector<ConfigurationChanges>& all, bool restart) {
    std::vector<Group> groups;
    for (ConfigurationChanges& each : all) {
        if (each.differ() || (restart && each.restart_is_pending))
            group_for(groups, restart ? each.configuration->service() : "").members.push_back(&each);
    }
    return groups;
}

/// A failure is kept until the service runs again.
std::optional<Failure> write_members(const Group& group) {
    try {
        for (ConfigurationChanges* const each : group.members) {
            if (each->differ())
                write_values(*each);
        }
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::string& text) {
        return Failure{failed, to_utf8(text)};
    }
    return std::nullopt;
}

ExitCode write_group(const Group& group, const RestartChoice& choice) {
    std::optional<Failure> kept;
    const std::chrono::seconds limit(choice.timeout_seconds);
    PrintedRestart dialogue(group.service, group.is_pending(), group.differs());
    if (!group.service.empty())
        wait_until_settled(group.service, limit);
    restart_around({.service_name = group.service,
                    .any = [] { return true; },
                    .write = [&] { kept = write_members(group); },
                    .stop_limit = limit,
                    .start_limit = limit,
                    .manager_access = SC_MANAGER_CONNECT,
                    .service_access = restart_rights},
                   dialogue);
    const ExitCode code = dialogue.finish(group.any_written());
    for (ConfigurationChanges* const each : group.members)
        each->is_restarted = dialogue.is_restarted();
    if (kept)
        throw Failure(*kept);
    return code;
}

ExitCode stopped_by(const Failure& failure, const std::vector<Group>& groups) {
    const bool written =
        std::any_of(groups.begin(), groups.end(), [](const Group& each) { return each.any_written(); });
    if (!written)
        throw Failure{failure.code, failure.text + "; nothing was written"};
    say(failure.text + "; values that were already written stay");
    return failure.code;
}

} // namespace

void require_access(const std::vector<ConfigurationChanges>& all, const RestartChoice& choice) {
    for (const ConfigurationChanges& each : all) {
        if (!each.differ())
            continue;
        const MachineKey writable(each.configuration->key(), KEY_SET_VALUE);
        if (choice.restart && !each.configuration->service().empty())
            require_restartable(each.configuration->service(), std::chrono::seconds(choice.timeout_seconds));
    }
}

ExitCode write_changes(std::vector<ConfigurationChanges>& all, const RestartChoice& choice) {
    ExitCode code = as_wished;
    const std::vector<Group> groups = groups_of(all, choice.restart);
    try {
        const Uninterrupted uninterrupted;
        for (const Group& each : groups) {
            if (uninterrupted.is_over())
                throw Failure{failed, "interrupted by Ctrl+C or the end of the session"};
            code = std::max(code, write_group(each, choice));
        }
    } catch (const Failure& failure) {
        return stopped_by(failure, groups);
    }
    return code;
}

} // namespace ctl
