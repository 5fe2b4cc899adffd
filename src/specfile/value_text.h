#pragma once
/// The texts of values: how the pages of each kind read and store them, and checks for values that are set
/// without a page. The checks follow the same rules, but give a reason where a page would cut or guess.
#include "specfile/spec_text.h"

#include <optional>
#include <string>

/// Whether a boolean's stored text stands for a checked box: "true" in any letter case does.
bool means_checked(const std::string& stored);
/// "true" or "false", the only texts that a boolean stores.
std::string checked_text(bool is_checked);

/// The plain decimal form of the number that `text` starts with, in C's notations and bounded by 32 bits;
/// empty when there is none.
std::string integer_text(const std::string& text);

/// The text that a declaration's page stores if it is opened on `stored` and left without an edit.
std::string stored_by_page(const Declaration& declaration, const std::string& stored);

/// The reason why `text` is invalid for a declaration, as part of a sentence; empty if it is valid, and then
/// stored_by_page returns the text to store. Stricter than a page, which cuts and guesses.
std::optional<std::string> value_problem(const Declaration& declaration, const std::string& text);
