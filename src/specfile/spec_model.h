#pragma once
/// A whole spec file: all statements that the reader finds in it, kept together.
#include "specfile/spec_text.h"

#include <memory>
#include <string>
#include <vector>

struct SpecEntry {
    Declaration declaration;
    std::size_t group;
};

/// Its lines refer to a text that it owns.
struct SpecModel {
    /// Reads everything, including what follows errors.
    explicit SpecModel(std::string octets);

    std::unique_ptr<const std::string> text;
    SpecLine registry_path;
    /// The name that a new file gives itself.
    SpecLine name;
    bool is_old = false;
    SpecLine service_name;
    std::vector<GroupStart> groups;
    std::vector<SpecEntry> entries;
    /// Subspecs for which the window reports an unknown type instead of creating an entry.
    std::vector<SpecError> unknown_types;
    /// Errors that keep the window from starting.
    std::vector<SpecError> errors;

private:
    void take(const ServiceName& service) { service_name = service.name; }
    void take(const GroupStart& group) { groups.push_back(group); }
    void take(const SpecError& error) { errors.push_back(error); }
    void take(const Declaration& declaration);
};
