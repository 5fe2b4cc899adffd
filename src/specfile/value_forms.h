#pragma once
/// How entries of a kind read stored texts, and what they store.
#include <cstddef>
#include <string>

/// The longest text that a page reads from a control, in bytes; longer texts are cut.
inline constexpr std::size_t longest_value = 1023;

/// Whether a boolean's stored text stands for a checked box: "true" in any letter case does.
bool means_checked(const std::string& stored);
/// "true" or "false", the only texts that a boolean stores.
std::string checked_text(bool is_checked);

/// The plain decimal form of the number that `text` starts with, in C's notations and bounded by 32 bits;
/// empty when there is none.
std::string integer_text(const std::string& text);
