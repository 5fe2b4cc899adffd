#pragma once
/// The formats that a template is written in. Each returns the octets of a file and depends on nothing but
/// the source: the same source gives the same octets.
#include "ctl/template/source.h"

#include <string>

namespace ctl {

/// Leaves out what policies cannot express. The source that is left can be written.
void drop_what_policies_lack(TemplateSource& source);
/// Prefix and name space tell templates apart that one domain uses.
std::string policy_prefix(const TemplateSource& source);
/// Policies, and their texts in English.
std::string write_admx(const TemplateSource& source);
std::string write_adml(const TemplateSource& source);

/// Leaves out what registry items cannot express. The source that is left can be written.
void drop_what_items_lack(TemplateSource& source);
/// Registry items of Group Policy Preferences.
std::string write_preferences(const TemplateSource& source);

/// A .reg file.
std::string write_reg(const TemplateSource& source);

} // namespace ctl
