#pragma once
/// A spec file as a whole: what the syntax reads statement by statement, kept for those who need it at once.
#include "specfile/spec_text.h"

#include <memory>
#include <string>
#include <vector>

struct SpecEntry {
    Declaration declaration;
    std::size_t group;
};

/// Its lines are parts of a text that it owns.
struct SpecModel {
    /// Everything, including what follows errors.
    explicit SpecModel(std::string octets);

    std::unique_ptr<const std::string> text;
    SpecLine registry_path;
    /// Of a new file.
    SpecLine name;
    bool is_old = false;
    SpecLine service_name;
    std::vector<GroupStart> groups;
    std::vector<SpecEntry> entries;
    /// Subspecs of which the window makes no entry, and says so;
    std::vector<SpecError> unknown_types;
    /// and what keeps it from starting.
    std::vector<SpecError> errors;

private:
    void take(const ServiceName& service) { service_name = service.name; }
    void take(const GroupStart& group) { groups.push_back(group); }
    void take(const SpecError& error) { errors.push_back(error); }
    void take(const Declaration& declaration);
};
