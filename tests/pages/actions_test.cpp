#include "pages/kinds/actions.h"

#include "base/exceptions.h"
#include "pages/test_key.h"
#include "support/boxes.h"
#include "support/page.h"
#include "window/guard.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

class DeleteKeyPage : public SpecKeyTest {
protected:
    void show() {
        entry = std::make_unique<DeleteKey>(DeleteRegKey(test_key + "\\Cache"), title_and_help);
        entry->select(main.window());
    }
    HWND control() const { return main.control(1); }

    StandInMainWindow main{436, 229};
    std::unique_ptr<DeleteKey> entry;
};

TEST_F(DeleteKeyPage, RequestsTheDeletion) {
    make_key(test_key + "\\Cache");
    show();
    EXPECT_TRUE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
    main.page_changes();
    click(control());
    EXPECT_EQ(main.page_changes(), 1);
    entry->deselect(main.window());
    EXPECT_TRUE(entry->changed());
    entry->select(main.window());
    EXPECT_TRUE(is_checked(control()));
    click(control());
    entry->takeValue();
    EXPECT_FALSE(entry->changed());
}

TEST_F(DeleteKeyPage, OfAMissingKeyIsDisabled) {
    show();
    EXPECT_FALSE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
    SendMessageA(control(), BM_SETCHECK, BST_CHECKED, 0);
    entry->deselect(main.window());
    EXPECT_FALSE(entry->delete_requested());
    EXPECT_FALSE(entry->changed());
}

TEST_F(DeleteKeyPage, OnceDeletedIsDisabled) {
    make_key(test_key + "\\Cache");
    show();
    click(control());
    entry->takeValue();
    entry->write();
    EXPECT_FALSE(entry->changed());
    entry->deselect(main.window());
    entry->select(main.window());
    EXPECT_FALSE(IsWindowEnabled(control()));
    EXPECT_FALSE(is_checked(control()));
}

constexpr const char* event_name = "tavrin_test_event";

class SignalPage : public CleanSystem {
protected:
    void show(const std::string& name = event_name) {
        entry = std::make_unique<SignalEvent>(name, title_and_help);
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
