#pragma once
/// Finds the problems of a state for every machine that has certain spec files. Problems are thrown as texts.
#include "ctl/change/state_file.h"
#include "ctl/check/findings.h"
#include "ctl/io/registry_names.h"
#include "specfile/spec_model.h"

#include <string>
#include <vector>

namespace ctl {

/// Collects problems, so that all of them are reported at once.
class Problems {
public:
    void add(const std::string& line);

    /// If there was a problem, throws Failure of the code `invalid` that says that nothing was written.
    void refuse_if_any() const;

private:
    std::string text_;
    std::size_t count_ = 0;
};

/// Finds the entries of one configuration for a state's values. Texts are in the code page of the spec file.
class DesiredEntries {
public:
    DesiredEntries(const SpecModel& spec, unsigned code_page);

    /// The place, in the spec file's order, of the entry with this value name in any letter case, or else of
    /// the only one with this title. Throws a text if the name is unknown, stands for several entries or for
    /// one without a value, and if the entry was asked for before.
    std::size_t place_of(const DesiredValue& desired);

private:
    std::size_t find(const std::string& name) const;
    [[noreturn]] void refuse(const std::string& name) const;

    const std::vector<SpecEntry>& entries_;
    unsigned code_page_;
    /// The tables hold the number of an entry, counted from 1, in the place of a line.
    RegistryNames value_names_;
    NameTable titles_{false};
    NameTable repeated_titles_{false};
    std::vector<bool> is_given_;
};

/// The desired text in the code page. Throws a text if the entry does not accept it.
std::string desired_text(const DesiredValue& desired, const Declaration& declaration, unsigned code_page);

/// Says that `text`, in the code page, is refused because of `problem`.
std::string refusal(const std::string& text, const std::string& problem, unsigned code_page);

/// A clause for each property that the state names and that differs here. Properties that the state does not
/// name are not compared.
std::vector<std::string> contradictions(const Guards& said, const Guards& found);

/// A spec file that a state is checked against.
struct CheckedSpec {
    SpecModel spec;
    /// The digest of its octets.
    std::string sha256;
};

/// The spec file that a state's configuration is meant for; null if there is none.
const CheckedSpec* find_spec(const DesiredConfiguration& desired, const std::vector<CheckedSpec>& specs,
                             unsigned code_page);

/// The problems for which `apply` would refuse the state, or warn, on machines with these spec files. All are
/// in line 1.
std::vector<Finding> check_state(const State& state, const std::vector<CheckedSpec>& specs,
                                 unsigned code_page);

} // namespace ctl
