#pragma once
/// Runs the whole program over the substitute, on a machine with one configuration and its service.
#include "ctl/failure.h"
#include "support/registry.h"
#include "support/scratch_folder.h"
#include "support/system.h"

#include <string>
#include <vector>

struct Ended {
    ctl::ExitCode code;
    std::string out;
    std::string err;
};

/// The report without the machine and the time.
std::string without_machine(const std::string& report);

class Program : public CleanSystem {
protected:
    Program();

    Ended run(const std::vector<std::string>& words);
    /// set or apply, with its backup in the scratch folder.
    Ended change(std::vector<std::string> words);
    Ended apply(const std::string& state, std::vector<std::string> words = {});
    /// Installs another configuration with this spec file.
    void add_configuration(const std::string& value_name, const std::string& spec);
    std::string text(const std::string& name) const { return text_value(key, name); }
    /// The same, with a full disk for its standard output.
    Ended change_unheard(std::vector<std::string> words);
    /// Where the one backup is.
    std::string backup_path() const;
    /// The one backup, from UTF-16; empty when there is none.
    std::string backup() const;

    const std::string key = "SOFTWARE\\Tavrin\\Agent";
    ScratchFolder scratch;
};
