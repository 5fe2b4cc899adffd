// Repeats one long session with the program: in run k, something arrives at the k-th place where the system
// may hand the program what another process sends. A model of a few lines says what must hold after each step
// and at the end.
#include "app/main_window_controls.h"
#include "pages/configuration.h"
#include "substitute/control.h"
#include "support/registry.h"
#include "support/substitute/whole_session.h"
#include "window/top_level.h"

#include <cstdio>
#include <gmock/gmock.h>

#include <algorithm>

namespace {

/// Something that arrives. Returns what is wrong with the program's reaction; empty if nothing is.
struct Arrival {
    const char* name;
    std::string (*happen)(const WholeSession& session);
    /// The session ends there and then, unless OK's sequence runs.
    bool ends = false;
};

std::string select_other_page(const WholeSession&) {
    select("Domain");
    return "";
}

std::string order_to_close(const WholeSession&) {
    SendMessageA(main_window, WM_CLOSE, 0, 0);
    return "";
}

/// After the service has been started again, ending the program does no harm.
std::string ask_for_end_of_session(const WholeSession& session) {
    const bool may_end = SendMessageA(main_window, WM_QUERYENDSESSION, 0, 0) != 0;
    const bool through = substitute::service_counts("TavrinAgent").starts > 0;
    return through || may_end != session.ok_pressed() ? "" : "the session's end is answered wrongly";
}

std::string turn_to_another_program(const WholeSession&) {
    substitute::leave_program();
    substitute::return_to_program();
    return "";
}

std::string minimise_and_restore(const WholeSession&) {
    ShowWindow(main_window, SW_MINIMIZE);
    ShowWindow(main_window, SW_RESTORE);
    return "";
}

std::string size_of_nothing(const WholeSession&) {
    SendMessageA(main_window, WM_SIZE, SIZE_RESTORED, 0);
    SetWindowPos(main_window, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOZORDER);
    return "";
}

std::string press_close(const WholeSession&) {
    SendMessageA(control(close_id), BM_CLICK, 0, 0);
    return "";
}

constexpr Arrival arrivals[] = {
    {"a selection", &select_other_page},
    {"an order to close", &order_to_close, true},
    {"the end of the session", &ask_for_end_of_session},
    {"a visit to another program", &turn_to_another_program},
    {"minimising and restoring", &minimise_and_restore},
    {"a size of nothing", &size_of_nothing},
    {"a press on Close", &press_close, true},
};

/// The session has one configuration.
Configuration& configuration() { return *configurations.begin()->second; }

std::vector<BaseEntry*> differing_entries() {
    std::vector<BaseEntry*> differing;
    for (const Group& group : configuration().groups) {
        for (const OwnedEntry& entry : group.entries) {
            if (entry->changed())
                differing.push_back(entry.get());
        }
    }
    return differing;
}

/// Whether the buttons know of it: its page is shown, or was left with a change.
bool is_known_to_differ(BaseEntry* entry) {
    return configuration().shown_entry == entry || configuration().changed_entries.contains(entry);
}

std::string title_of_selected() {
    const HTREEITEM caret =
        reinterpret_cast<HTREEITEM>(SendMessageA(control(tree_id), TVM_GETNEXTITEM, TVGN_CARET, 0));
    const auto& items = configuration().entry_items;
    const auto found = items.find(caret);
    return found == items.end() ? "" : std::string(found->second->title());
}

/// What is wrong with the window; empty when nothing is.
std::string fault_of_window() {
    const std::vector<BaseEntry*> differing = differing_entries();
    for (BaseEntry* const entry : differing) {
        if (!is_known_to_differ(entry))
            return "nobody saw \"" + std::string(entry->title()) + "\" change";
    }
    const bool differs = !differing.empty();
    if (text_of(control(close_id)) != (differs ? "Cancel" : "Close"))
        return "the button says \"" + text_of(control(close_id)) + "\"";
    if ((IsWindowEnabled(control(ok_id)) != FALSE) != differs)
        return "OK does not fit what differs";
    const std::string shown = page() == nullptr ? "" : text_of(page());
    if (shown != title_of_selected())
        return "the page of \"" + shown + "\" is shown beside \"" + title_of_selected() + "\"";
    return IsWindowEnabled(main_window) ? "" : "the window is disabled";
}

/// A session in which something arrives at the n-th place.
struct Run {
    const Arrival& arrival;
    std::size_t place;

    std::size_t places = 0;
    std::string function = {};
    std::string fault = {};
    bool in_sequence = false;

    void deliver(const WholeSession& session, const char* where) {
        if (main_window == nullptr || ++places != place)
            return;
        function = where;
        in_sequence = session.ok_pressed();
        note(arrival.happen(session));
    }
    void look() {
        const substitute::OwnCalls own;
        if (main_window != nullptr)
            note(fault_of_window());
    }
    void note(const std::string& found) {
        if (fault.empty())
            fault = found;
    }
};

void expect_nothing_left_open() {
    EXPECT_EQ(substitute::open_keys(), 0);
    EXPECT_EQ(substitute::open_service_handles(), 0);
    EXPECT_EQ(substitute::open_events(), 0);
    EXPECT_EQ(substitute::open_windows(), 0U);
    EXPECT_EQ(substitute::open_hooks(), 0);
}

void expect_nothing_written() {
    for (const auto& [name, values] : WholeSession::values())
        EXPECT_EQ(text_value(agent_key, name), values.old_text);
    EXPECT_EQ(substitute::service_counts("TavrinAgent").stops, 0);
}

void expect_sequence_complete(const WholeSession& session) {
    EXPECT_TRUE(differing_entries().empty()) << "something was not written";
    EXPECT_EQ(substitute::service_counts("TavrinAgent").stops, 1);
    EXPECT_EQ(substitute::service_counts("TavrinAgent").starts, 1);
    EXPECT_EQ(session.seen().back().caption, "Restart Agent Service?");
}

/// How many places there are.
std::size_t play(const Arrival& arrival, std::size_t place) {
    Run run{arrival, place};
    const WholeSession session(
        {.at_delivery = [&](const WholeSession& now, const char* where) { run.deliver(now, where); },
         .look = [&](const WholeSession&) { run.look(); }});
    SCOPED_TRACE(std::string(arrival.name) + " at place " + std::to_string(place) + ", in " + run.function);
    EXPECT_EQ(run.fault, "");
    EXPECT_EQ(session.exit_code(), 0);
    expect_nothing_left_open();
    if (arrival.ends && !run.in_sequence && !run.function.empty()) {
        expect_nothing_written();
    } else {
        expect_sequence_complete(session);
    }
    return run.places;
}

/// Most places are repetitions of one long wait or of similar windows, of which a few are enough.
bool is_worth_a_run(const std::string& function, std::size_t same_before, std::size_t place) {
    if (function == "PeekMessageA")
        return same_before < 3 || same_before % 23 == 0;
    const bool moves_windows = function.ends_with("Window") || function == "SetFocus";
    return !moves_windows || place % 3 == 0;
}

std::vector<std::size_t> places_of_session() {
    std::vector<std::size_t> places;
    std::size_t count = 0;
    std::size_t same = 0;
    std::string last;
    const WholeSession session({.at_delivery =
                                    [&](const WholeSession&, const char* function) {
                                        if (main_window == nullptr)
                                            return;
                                        same = function == last ? same + 1 : 0;
                                        last = function;
                                        ++count;
                                        if (is_worth_a_run(function, same, count))
                                            places.push_back(count);
                                    },
                                .look = [](const WholeSession&) {}});
    return places;
}

TEST(EveryDelivery, NothingThatArrivesAnywhereLosesAValueOrAWord) {
    const std::vector<std::size_t> places = places_of_session();
    EXPECT_GT(places.size(), 60U);
    std::size_t runs = 0;
    for (const Arrival& arrival : arrivals) {
        for (const std::size_t place : places) {
            play(arrival, place);
            ++runs;
            if (testing::Test::HasFailure())
                return;
        }
    }
    std::printf("%zu arrivals at %zu places\n", runs, places.size());
}

} // namespace
