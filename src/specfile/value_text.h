#pragma once
/// Values that are set without a page, for whatever a spec file declares: by the same rules, and with reasons
/// where a page would cut or guess.
#include "specfile/spec_text.h"
#include "specfile/value_forms.h"

#include <optional>
#include <string>

/// What a declaration's page stores when it is opened on `stored` and left without an edit.
std::string stored_by_page(const Declaration& declaration, const std::string& stored);

/// Why `text` is not to be entered for a declaration, as half a sentence; nothing when it may be, and
/// then stored_by_page tells what to store. Stricter than a page, which cuts, guesses and offers.
std::optional<std::string> value_problem(const Declaration& declaration, const std::string& text);
