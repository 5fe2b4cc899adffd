#pragma once
/// Runs the apply sequence over scripted services and the virtual clock.
#include "app/apply_changes.h"
#include "substitute/control.h"
#include "support/fake_entry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>
#include <ostream>
#include <string>
#include <vector>

struct Box {
    std::string text;
    std::string caption;
    UINT style;
    bool operator==(const Box&) const = default;
};
inline void PrintTo(const Box& box, std::ostream* out) {
    *out << box.caption << ": " << box.text << " " << box.style;
}

inline const Box restart_box{
    "The Tavrin Agent Service is currently started. In order for the changes to be effectuated, the "
    "service will have to be restarted. Do you wish to do this now?",
    "Restart Tavrin Agent Service?", MB_YESNO | MB_ICONQUESTION};
inline const Box stop_failed_box{
    "Failed to stop service. You will have to restart the service manually, in order to effectuate "
    "the changes",
    "Stopping service failed", MB_ICONERROR};
inline const Box manual_box{
    "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
    "effectuated, you will have to restart the Tavrin Agent service manually.",
    "Service must be restarted manually", MB_ICONEXCLAMATION};
inline const Box stopped_box{"The Tavrin Agent service is stopped. Do you want to start it?",
                             "Start Tavrin Agent service?", MB_YESNO | MB_ICONQUESTION};
inline const Box start_failed_box{
    "The service could not be started. Please start the Tavrin Agent service manually.",
    "Error starting service", MB_ICONERROR};
inline const Box not_restarted_box{
    "The service could not be automatically restarted. Please start the Tavrin Agent service "
    "manually.",
    "Error restarting service", MB_ICONERROR};

class Apply : public testing::Test {
protected:
    void SetUp() override {
        substitute::reset();
        main_window = CreateWindowExA(0, "Static", "main", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 436,
                                      229, nullptr, nullptr, nullptr, nullptr);
        EnableWindow(main_window, FALSE); // as OK does
        configuration.name = "Tavrin Agent";
        configuration.serviceName = "TavrinAgent";
        for (FakeEntry* entry : {&first, &second, &third})
            configuration.entry_items.emplace(reinterpret_cast<HTREEITEM>(++last_item), entry);
        first.is_changed = third.is_changed = true;
        configuration.changed_entries = {&first, &third};
    }

    void TearDown() override {
        EXPECT_EQ(substitute::open_service_handles(), 0) << "every path closes its handles";
        EXPECT_EQ(substitute::answers_left(), 0u);
        main_window = nullptr;
        substitute::reset();
    }

    void no_changes() {
        first.is_changed = third.is_changed = false;
        configuration.changed_entries.clear();
    }

    void agent(const substitute::ServiceScript& script) { substitute::set_service("TavrinAgent", script); }
    substitute::ServiceCounts counts() { return substitute::service_counts("TavrinAgent"); }

    /// Runs the sequence, answering the boxes in turn.
    std::vector<Box> boxes_after_apply(const std::vector<int>& answers = {}) {
        for (const int answer : answers)
            substitute::answer_next_box(answer);
        apply_changes(configuration);
        std::vector<Box> boxes;
        for (const substitute::ShownBox& box : substitute::shown_boxes()) {
            EXPECT_EQ(box.owner, main_window);
            boxes.push_back({box.text, box.caption, box.style});
        }
        return boxes;
    }

    void expect_written() {
        EXPECT_EQ(first.writes, 1);
        EXPECT_EQ(second.writes, 0) << "an entry without a change is never written";
        EXPECT_EQ(third.writes, 1);
        EXPECT_THAT(configuration.changed_entries, testing::IsEmpty());
    }

    Configuration configuration{false};
    FakeEntry first{"first"};
    FakeEntry second{"second"};
    FakeEntry third{"third"};
    std::uintptr_t last_item = 0;
};
