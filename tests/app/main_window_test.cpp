#include "app/main_window_controls.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

/// Three text values and a number in two groups; no service.
constexpr char plain[] =
    "SOFTWARE\\TavrinTests\\Agent\nPlain\n"
    "!Identity\n$Agent name\nName\nThe name.\nString\n$Agent domain\nDomain\nThe domain.\nString\n"
    "!Servers\n$Server list\nList\nThe servers.\nServerList\n$Port\nPort\nThe port.\nInteger\n";
constexpr char tested[] = "SOFTWARE\\TavrinTests\\Agent\nTested\n"
                          "!All\n$Name\nName\nh\nString\n$Domain\nDomain\nh\nString\n$List\nList\nh\nString\n"
                          "$Default port\nPort\nh\nString\n$Gone\nSub\nh\nRemoveKey\n"
                          "$Test\n\nh\nConnectionTest\n";
constexpr char title_pool[] = "Name\nDomain\nList\nDefault port\n";

class MainWindow : public ProgramTest {
protected:
    void expect_buttons(const char* close_text, bool ok_enabled) {
        EXPECT_EQ(text_of(control(close_id)), close_text);
        EXPECT_EQ(IsWindowEnabled(control(ok_id)) != FALSE, ok_enabled);
    }
    static void edit(const std::string& text) { SetWindowTextA(page_controls().at(0), text.c_str()); }
    static void press(int id) { SendMessageA(control(id), BM_CLICK, 0, 0); }
    static std::string stored(const std::string& name) { return text_value(agent_key, name); }
};

TEST_F(MainWindow, ShowsConfigurationsGroupsAndEntriesAsATree) {
    spec_file("B", plain);
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\n$First\nF\nh\n$Second\nS\nh\n!Named\n$Third\nT\nh\n");
    EXPECT_EQ(shown_tree(),
              "A\n First\n Second\n Named\n  Third\n"
              "Plain\n Identity\n  Agent name\n  Agent domain\n Servers\n  Server list\n  Port\n");
}

TEST_F(MainWindow, NothingIsSelectedOrExpandedAtFirst) {
    spec_file("A", plain);
    then([] {
        EXPECT_EQ(SendMessageA(control(tree_id), TVM_GETNEXTITEM, TVGN_CARET, 0), 0);
        EXPECT_EQ(page(), nullptr);
        EXPECT_FALSE(IsWindowVisible(control(test_connection_id)));
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, SelectingAnEntryShowsItsPageAndLeavesTheButtonsAtClose) {
    spec_file("A", plain);
    set_text(agent_key, "Name", "web1");
    then([] { select("Agent name"); });
    then([&] {
        ASSERT_NE(page(), nullptr);
        EXPECT_EQ(text_of(page()), "Agent name");
        EXPECT_EQ(text_of(GetWindow(page(), GW_CHILD)), "The name.");
        EXPECT_EQ(text_of(page_controls().at(0)), "web1");
        expect_buttons("Close", false);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, AnEditTurnsCloseIntoCancelAndUndoingItTurnsItBack) {
    spec_file("A", plain);
    set_text(agent_key, "Name", "web1");
    then_edit("Agent name", "web2");
    then([&] { expect_buttons("Cancel", true); });
    then([] { edit("web1"); });
    then([&] { expect_buttons("Close", false); });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, AChangedEntryThatWasLeftKeepsTheButtonsAndIsUndoneOnItsPage) {
    spec_file("A", plain);
    set_text(agent_key, "Name", "web1");
    then_edit("Agent name", "web2");
    then([] { select("Agent domain"); });
    then([&] { expect_buttons("Cancel", true); });
    then([] { select("Agent name"); });
    then([&] {
        EXPECT_EQ(text_of(page_controls().at(0)), "web2");
        expect_buttons("Cancel", true);
    });
    then([] { edit("web1"); });
    then([&] { expect_buttons("Close", false); });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, SelectingAGroupOrARootTakesThePageDown) {
    spec_file("A", plain);
    then([] { select("Port"); });
    then([] { EXPECT_NE(page(), nullptr); });
    then([] { select("Servers"); });
    then([] { EXPECT_EQ(page(), nullptr); });
    then([] { select("Port"); });
    then([] { select("Plain"); });
    then([] { EXPECT_EQ(page(), nullptr); });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, OkWritesWhatChangedAndNothingElse) {
    spec_file("A", plain);
    set_text(agent_key, "Name", "web1");
    then_edit("Agent name", "web2");
    then([] { press(ok_id); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(stored("Name"), "web2");
    EXPECT_EQ(raw_value(agent_key, "Domain"), std::nullopt);
    EXPECT_EQ(raw_value(agent_key, "Port"), std::nullopt);
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

TEST_F(MainWindow, OkWritesTheEntriesOfEveryConfiguration) {
    spec_file("A", plain);
    spec_file("B", "SOFTWARE\\TavrinTests\\Agent\nOther\n!G\n$Colour\nColour\nh\nString\n");
    then_edit("Agent name", "web2");
    then_edit("Colour", "green");
    then([] { press(ok_id); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(stored("Name"), "web2");
    EXPECT_EQ(stored("Colour"), "green");
}

class ClosedWithAnEdit : public MainWindow {
protected:
    void expect_nothing_written_by(std::function<void()> closing) {
        spec_file("A", plain);
        set_text(agent_key, "Name", "web1");
        then_edit("Agent name", "web2");
        then(std::move(closing));
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(stored("Name"), "web1");
    }
};

TEST_F(ClosedWithAnEdit, ByItsFrameWritesNothing) {
    expect_nothing_written_by([] { PostMessageA(main_window, WM_CLOSE, 0, 0); });
}

TEST_F(ClosedWithAnEdit, ByCancelWritesNothing) {
    expect_nothing_written_by([] { press(close_id); });
}

TEST_F(MainWindow, AKeyThatVanishedBeforeOkIsFatalAndKeepsWhatWasWrittenBefore) {
    make_key("SOFTWARE\\TavrinTests\\Other");
    spec_file("A", plain);
    spec_file("B", "SOFTWARE\\TavrinTests\\Other\nZ\n!G\n$Colour\nColour\nh\nString\n");
    then_edit("Agent name", "web2");
    then_edit("Colour", "green");
    then([] { delete_key("SOFTWARE\\TavrinTests\\Other"); });
    then([] { press(ok_id); });
    EXPECT_EQ(run(), 1);
    ASSERT_EQ(boxes.seen().size(), 1u);
    EXPECT_EQ(boxes.seen()[0].text, "Cannot open path \"SOFTWARE\\TavrinTests\\Other\" for writing");
    EXPECT_EQ(boxes.seen()[0].caption, "Error!");
    EXPECT_EQ(stored("Name"), "web2");
}

TEST_F(MainWindow, ControlsStandWhereTheLayoutSays) {
    spec_file("A", tested);
    then([] { SetWindowPos(main_window, nullptr, 0, 0, 700, 400, SWP_NOZORDER | SWP_NOMOVE); });
    then([] { select("Name"); });
    then([] {
        RECT client{};
        GetClientRect(main_window, &client);
        const auto expect_at = [](int id, LONG left, LONG top, LONG width, LONG height) {
            const RECT at = place_of(control(id));
            EXPECT_EQ(at.left, left) << id;
            EXPECT_EQ(at.top, top) << id;
            EXPECT_EQ(at.right - at.left, width) << id;
            EXPECT_EQ(at.bottom - at.top, height) << id;
        };
        expect_at(tree_id, 10, 10, client.right / 2 - 20, client.bottom - 50);
        expect_at(ok_id, client.right - 170, client.bottom - 30, 80, 25);
        expect_at(close_id, client.right - 85, client.bottom - 30, 80, 25);
        expect_at(test_connection_id, 5, client.bottom - 30, 120, 25);
        const RECT box = place_of(page());
        EXPECT_EQ(box.left, client.right / 2 + 10);
        EXPECT_EQ(box.right - box.left, client.right / 2 - 20);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, ThePageFollowsTheWindowsSize) {
    spec_file("A", plain);
    then([] { select("Port"); });
    then([] { SetWindowPos(main_window, nullptr, 0, 0, 900, 500, SWP_NOZORDER | SWP_NOMOVE); });
    then([] {
        RECT client{};
        GetClientRect(main_window, &client);
        EXPECT_EQ(place_of(page()).left, client.right / 2 + 10);
        EXPECT_EQ(place_of(page()).bottom, client.bottom - 40);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, DraggingItTooSmallMovesTheEdgeBack) {
    then([] {
        RECT proposed{300, 300, 500, 400};
        EXPECT_EQ(SendMessageA(main_window, WM_SIZING, WMSZ_TOPLEFT, reinterpret_cast<LPARAM>(&proposed)),
                  TRUE);
        EXPECT_EQ(proposed.left, 64);
        EXPECT_EQ(proposed.top, 171);
        EXPECT_EQ(proposed.right, 500);
        EXPECT_EQ(proposed.bottom, 400);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, TestConnectionIsShownForNodesOfAConfigurationThatOffersIt) {
    spec_file("A", plain);
    spec_file("B", tested);
    const auto offered = [] { return IsWindowVisible(control(test_connection_id)) != FALSE; };
    then([] { select("Tested"); });
    then([&] { EXPECT_TRUE(offered()); });
    then([] { select("Agent name"); });
    then([&] { EXPECT_FALSE(offered()); });
    then([] { select("Domain"); });
    then([&] { EXPECT_TRUE(offered()); });
    then([] { select("Plain"); });
    then([&] { EXPECT_FALSE(offered()); });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, CommandsWithANotificationCodeAreNotTheButtons) {
    spec_file("A", plain);
    then([] { SendMessageA(main_window, WM_COMMAND, MAKEWPARAM(close_id, 1), 0); });
    then([] { EXPECT_TRUE(IsWindow(main_window)); });
    EXPECT_EQ(run(), 0);
}

TEST_F(MainWindow, TheConnectionTestOfAnEmptyServerListSucceeds) {
    spec_file("B", std::string(tested) + title_pool);
    set_text(agent_key, "Port", "5000");
    then([] { select("Tested"); });
    then([] { press(test_connection_id); });
    EXPECT_EQ(run(), 0);
    ASSERT_EQ(boxes.seen().size(), 1u);
    EXPECT_EQ(boxes.seen()[0].caption, "Connection test successful");
}

class FailedLookup : public MainWindow {
protected:
    void expect_fatal(const std::string& titles, const std::string& text) {
        spec_file("A", std::string(tested) + titles);
        set_text(agent_key, "Port", "50x");
        then([] { select("Tested"); });
        then([] { press(test_connection_id); });
        EXPECT_EQ(run(), 1);
        ASSERT_EQ(boxes.seen().size(), 1u);
        EXPECT_EQ(boxes.seen()[0].text, text);
        EXPECT_EQ(boxes.seen()[0].caption, "Error!");
    }
};

TEST_F(FailedLookup, OfATitleThatNoEntryHasEndsTheProgram) {
    expect_fatal("Name\nNo such title\nList\nDefault port\n",
                 "Did not find anything with the title \"No such title\"");
}

TEST_F(FailedLookup, OfAnEntryWithoutATextValueEndsTheProgram) {
    expect_fatal("Gone\nDomain\nList\nDefault port\n", "Found title, but it is not a CommonRegKey");
}

TEST_F(FailedLookup, OfAPortThatIsNoNumberEndsTheProgram) {
    expect_fatal(title_pool, "Error reading value: Error parsing: \"50x\"");
}

} // namespace
