#pragma once
/// The forms in which a check's findings are printed, for people and for the programs that show them beside a
/// change.
#include "ctl/check/findings.h"

#include <string>
#include <vector>

namespace ctl {

struct CheckedFile {
    std::string path;
    /// Their texts are UTF-8 here.
    std::vector<Finding> findings;
};

using CheckedFiles = std::vector<CheckedFile>;

bool has_errors(const CheckedFiles& files);

/// `format` is text, json, sarif or github.
std::string check_report(const CheckedFiles& files, const std::string& format);

} // namespace ctl
