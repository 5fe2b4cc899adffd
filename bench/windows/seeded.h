#pragma once
/// What the driver writes to the registry and to the spec file, and what the peers read there.

namespace seeded {

inline constexpr char list_key[] = "SOFTWARE\\Tavrin\\TRConfig";
inline constexpr char list_value[] = "Agent";
inline constexpr char agent_key[] = "SOFTWARE\\TavrinBench\\Agent";

inline constexpr int entries_per_group = 50;
inline constexpr char title_format[] = "Setting number %d";
inline constexpr char value_format[] = "Value%d";
/// A value before and after OK.
inline constexpr char text_format[] = "text %d";
inline constexpr char changed_format[] = "changed %d";

inline constexpr char agent_name[] = "web1";
inline constexpr char agent_domain[] = "example.org";
inline constexpr char success_caption[] = "Connection test successful";

} // namespace seeded
