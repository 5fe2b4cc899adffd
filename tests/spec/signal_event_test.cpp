#include "spec/actions.h"

#include "error/exceptions.h"
#include "support/boxes.h"
#include "support/clean_system.h"
#include "support/page.h"
#include "window/guard.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

constexpr const char* event_name = "tavrin_test_event";

class SignalPage : public CleanSystem {
protected:
    void show(const std::string& name = event_name) {
        entry = std::make_unique<SignalEvent>(name, "Title", "Help");
        entry->select(main.window());
        main.page_changes();
    }
    HWND button() const { return main.control(1); }

    StandInMainWindow main{436, 229};
    Boxes boxes;
    std::unique_ptr<SignalEvent> entry;
};

/// The agent's side.
class Event {
public:
    explicit Event(BOOL manual_reset = FALSE)
        : handle_(CreateEventA(nullptr, manual_reset, FALSE, event_name)) {}
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() { CloseHandle(handle_); }
    /// Takes the signal of an auto-reset event.
    bool signalled() const { return WaitForSingleObject(handle_, 0) == WAIT_OBJECT_0; }

private:
    HANDLE handle_;
};

TEST_F(SignalPage, HasAButton) {
    entry = std::make_unique<SignalEvent>(event_name, "Title", "Help");
    entry->createControls(main.window());
    ASSERT_EQ(main.controls().size(), 2U);
    EXPECT_EQ(text_of(main.control(0)), "Help");
    EXPECT_EQ(class_of(button()), "Button");
    EXPECT_EQ(text_of(button()), "Execute");
    EXPECT_EQ(style_of(button()), WS_CHILD | WS_VISIBLE);
    EXPECT_EQ(GetDlgCtrlID(button()), -1);
    EXPECT_EQ(placement_of(button()), (Placement{0, 0, 1, 1}));
    EXPECT_EQ(font_of(button()), GetStockObject(DEFAULT_GUI_FONT));
    entry->layout(main.window());
    EXPECT_EQ(placement_of(button()), (Placement{10, 147, 178, 22}));
    entry->destroyControls(main.window());
    EXPECT_TRUE(children_of(main.window()).empty());
    EXPECT_TRUE(entryByGroupBox.empty());
}

TEST_F(SignalPage, SetsTheAgentsEvent) {
    const Event event;
    show();
    EXPECT_FALSE(event.signalled());
    click(button());
    EXPECT_TRUE(event.signalled());
    EXPECT_FALSE(event.signalled());
    ASSERT_EQ(boxes.seen().size(), 1U);
    EXPECT_EQ(boxes.seen()[0].text, "The action has been taken.");
    EXPECT_EQ(boxes.seen()[0].caption, "Action taken");
    EXPECT_EQ(boxes.seen()[0].style, MB_OK | MB_ICONINFORMATION);
    EXPECT_EQ(boxes.seen()[0].owner, nullptr);
}

TEST_F(SignalPage, SetsTheEventOncePerPress) {
    const Event event;
    show();
    click(button());
    EXPECT_TRUE(event.signalled());
    click(button());
    EXPECT_TRUE(event.signalled());
    EXPECT_FALSE(event.signalled());
    EXPECT_EQ(boxes.seen().size(), 2U);
}

TEST_F(SignalPage, SetsAnEventOfTheAgentsOwnMaking) {
    const Event event(TRUE);
    show();
    click(button());
    EXPECT_TRUE(event.signalled());
    EXPECT_TRUE(event.signalled());
}

TEST_F(SignalPage, NeedsNoAgent) {
    show();
    click(button());
    EXPECT_EQ(boxes.seen().size(), 1U);
    // The event was made for the signal and went with its last handle.
    EXPECT_EQ(OpenEventA(SYNCHRONIZE, FALSE, event_name), nullptr);
}

TEST_F(SignalPage, ChangesNothing) {
    show();
    click(button());
    EXPECT_EQ(main.page_changes(), 0);
    EXPECT_FALSE(entry->changed());
    entry->deselect(main.window());
    EXPECT_FALSE(entry->changed());
}

TEST_F(SignalPage, ThrowsOutOfTheProcedureWhatTheEventFails) {
    // A name with a backslash belongs to a namespace, and there is none of this name.
    show("no such namespace\\event");
    click(button());
    EXPECT_TRUE(keeping());
    EXPECT_EQ(boxes.seen().size(), 0U);
    try {
        rethrow_kept();
        ADD_FAILURE() << "nothing was kept";
    } catch (const error::ESystemError& failure) {
        EXPECT_THAT(failure.description(), testing::StartsWith("Couldn't signal event: "));
        EXPECT_EQ(failure.message, "");
    }
}

TEST_F(SignalPage, HasNothingToStore) {
    show();
    BaseEntry& page = *entry;
    page.read();
    page.write();
    EXPECT_FALSE(page.changed());
    EXPECT_TRUE(IsWindow(button())) << "the page is as it was";
}

} // namespace
