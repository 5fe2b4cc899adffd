#pragma once
/// Every kind of entry, as the tests know it: what its spec lines are, what its page shows, what it stores.
/// The tests of the pages, the fuzzers and the random user use this table, which shares nothing with the
/// program's own.
#include "platform/win32.h"
#include "window/controls.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

/// The way in which a page shows its value for editing.
enum class View { text, number, check, list, removal, nothing };
/// The lines after a type line.
enum class More { nothing, options, extension };

struct TestedControl {
    const char* window_class;
    const char* text = "";
    /// Beside WS_CHILD and WS_VISIBLE.
    LONG_PTR style = 0;
    bool has_sunken_edge = false;
    /// The text that is thrown if it cannot be created.
    const char* failure;
    /// On a page of 198 by 179, that of a main window of 436 by 229.
    Placement placement;
    /// The notification that reports an edit.
    std::optional<WORD> edited = std::nullopt;
};

struct PageKind {
    const char* type;
    /// The class of its entry.
    const char* entry;
    View view = View::nothing;
    More more = More::nothing;
    bool lists_ports = false;
    bool for_connection_test = false;
    /// Below the help text, in the order of their creation.
    std::vector<TestedControl> controls;

    /// Whether its entry holds a registry value.
    bool has_value() const { return view != View::nothing && view != View::removal; }
    /// The text of the page's push button; empty when it has none.
    std::string button() const;
    /// An entry of this kind in a spec file, with two options or the extension "log".
    std::string subspec(const std::string& title, const std::string& value_name) const;
};
std::ostream& operator<<(std::ostream& out, const PageKind& kind);

extern const std::vector<PageKind> page_kinds;
/// The kind of this type line; null when there is none.
const PageKind* find_page_kind(const std::string& type);
/// The kinds of that view.
std::vector<PageKind> kinds_seen_as(View view);
