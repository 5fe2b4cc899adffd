#pragma once
/// The formats of templates. Each function returns the octets of a file, and the same source always gives the
/// same octets.
#include "ctl/template/source.h"

#include <string>

namespace ctl {

/// Leaves out entries that policies cannot express, so that the rest can be written.
void drop_what_policies_lack(TemplateSource& source);
/// The prefix, which is also part of the namespace, distinguishes the templates of a domain.
std::string policy_prefix(const TemplateSource& source);
/// Policies, and their texts in English.
std::string write_admx(const TemplateSource& source);
std::string write_adml(const TemplateSource& source);

/// Leaves out entries that registry items cannot express, so that the rest can be written.
void drop_what_items_lack(TemplateSource& source);
/// Registry items of Group Policy Preferences.
std::string write_preferences(const TemplateSource& source);

/// A .reg file.
std::string write_reg(const TemplateSource& source);

} // namespace ctl
