#include "app/start_up.h"

#include "app/main_window_controls.h"
#include "base/exceptions.h"
#include "base/trace.h"
#include "pages/configuration.h"
#include "support/program.h"
#include "support/refusing_class.h"
#include "support/registry.h"
#include "window/guard.h"
#include "window/top_level.h"

#include <cstdio>
#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

std::string traced;

void keep_trace(const char* format, std::va_list arguments) {
    char line[256];
    std::vsnprintf(line, sizeof line, format, arguments);
    traced += line;
}

class StartUp : public ProgramTest {
protected:
    StartUp() {
        traced.clear();
        trace_listener = keep_trace;
    }
    ~StartUp() override { trace_listener = nullptr; }

    void expect_fatal(const std::string& text) {
        EXPECT_EQ(run(), 1);
        ASSERT_EQ(boxes.seen().size(), 1u);
        EXPECT_EQ(boxes.seen()[0].text, text);
        EXPECT_EQ(boxes.seen()[0].caption, "Error!");
        EXPECT_EQ(boxes.seen()[0].owner, nullptr);
    }
};

TEST_F(StartUp, WithoutItsRegistryKeySaysSoAndEndsWithOneAndNoWindow) {
    delete_key(list_key);
    expect_fatal("Cannot read out SOFTWARE\\Tavrin\\TRConfig");
    EXPECT_EQ(main_window, nullptr);
}

TEST_F(StartUp, WithoutValuesOpensAnEmptyTree) {
    EXPECT_EQ(shown_tree(), "");
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

TEST_F(StartUp, AValueWithoutDataIsNoConfiguration) {
    set_text(list_key, "Empty", "");
    then([] { EXPECT_THAT(configurations, IsEmpty()); });
    EXPECT_EQ(run(), 0);
}

TEST_F(StartUp, OpensTheWindowWithItsTitleAndSize) {
    then([] {
        EXPECT_EQ(text_of(main_window), "Tavrin Configuration");
        RECT at{};
        GetWindowRect(main_window, &at);
        EXPECT_EQ(at.right - at.left, 436);
        EXPECT_EQ(at.bottom - at.top, 229);
    });
    EXPECT_EQ(run(), 0);
}

TEST_F(StartUp, TracesEachStep) {
    spec_file("B", "SOFTWARE\\TavrinTests\\Agent\nBeta\n!G\n");
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\n!G\n");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(traced, "Reading old file\nRead configuration A\nReading new file\nRead configuration Beta\n"
                      "Created Window\nShowed Window\nUpdated Window\n");
}

TEST_F(StartUp, OfTwoConfigurationsWithOneNameTheFirstByValueNameIsKept) {
    spec_file("2", "SOFTWARE\\TavrinTests\\Agent\nSame\n!Second\n");
    spec_file("1", "SOFTWARE\\TavrinTests\\Agent\nSame\n!First\n");
    EXPECT_EQ(shown_tree(), "Same\n First\n");
}

TEST_F(StartUp, ConfigurationsStandInByteOrderOfTheirNames) {
    spec_file("1", "SOFTWARE\\TavrinTests\\Agent\nalpha\n!G\n");
    spec_file("2", "SOFTWARE\\TavrinTests\\Agent\nZeta\n!G\n");
    spec_file("3", "SOFTWARE\\TavrinTests\\Agent\n\xC4\n!G\n");
    EXPECT_EQ(shown_tree(), "Zeta\n G\nalpha\n G\n\xC4\n G\n");
}

TEST_F(StartUp, AMissingSpecFileIsPassedOverInSilence) {
    set_text(list_key, "Gone", "no_such_folder/no_such.spec");
    spec_file("There", "SOFTWARE\\TavrinTests\\Agent\nThere\n!G\n");
    EXPECT_EQ(shown_tree(), "There\n G\n");
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

TEST_F(StartUp, ASpecFileThatDoesNotParseIsFatal) {
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nName\nService\nStray\n");
    expect_fatal("Parse error: line \"Stray\" not group start");
    EXPECT_EQ(main_window, nullptr);
}

TEST_F(StartUp, AValueWhoseKeyIsMissingIsFatal) {
    spec_file("A", "SOFTWARE\\Tavrin\\NoSuchKey\nName\n!G\n$T\nV\nHelp\nString\n");
    expect_fatal("Cannot open path \"SOFTWARE\\Tavrin\\NoSuchKey\" for reading");
}

TEST_F(StartUp, AWindowClassThatIsTakenIsFatal) {
    const RefusingClass taken("trconfigclass");
    expect_fatal("Window Registration Failed!");
}

struct Missing {
    const char* name;
    const char* window_class;
    int nth;
    const char* text;
};

class MissingControl : public StartUp, public testing::WithParamInterface<Missing> {};

TEST_P(MissingControl, IsFatal) {
    const RefusingClass refusing(GetParam().window_class, GetParam().nth);
    expect_fatal(GetParam().text);
    EXPECT_EQ(main_window, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Each, MissingControl,
                         testing::Values(Missing{"Tree", "SysTreeView32", 1, "Unable to create tree view"},
                                         Missing{"Close", "Button", 1, "Unable to create cancel button"},
                                         Missing{"Ok", "Button", 2, "Unable to create ok button"},
                                         Missing{"Test", "Button", 3,
                                                 "Unable to create test connection button"}),
                         [](const auto& missing) { return std::string(missing.param.name); });

TEST_F(StartUp, ATextThrownWhileAPageIsShownIsFatal) {
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nName\n!G\n$T\nV\nHelp\nString\n");
    const RefusingClass refusing("Edit");
    then([] { select("T"); });
    expect_fatal("Unable to create text entry control");
}

/// Keeps a text as a window procedure does, at a point that the trace marks.
void keep_when_created(const char* format, std::va_list arguments) {
    keep_trace(format, arguments);
    if (std::string(format) != "Created Window\n")
        return;
    guarded(
        0, []() -> LRESULT { throw std::string("thrown while shown"); }, [] { return 0; });
}

TEST_F(StartUp, ATextThrownWhileTheWindowIsFirstShownIsFatalAtOnce) {
    trace_listener = keep_when_created;
    expect_fatal("thrown while shown");
    EXPECT_EQ(traced, "Created Window\n");
}

TEST_F(StartUp, WhileAFatalTextIsShownTheWindowTakesNoOrders) {
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nName\n!G\n$T\nV\nHelp\nString\n$U\nW\nHelp\nDirectory\n");
    set_text(agent_key, "V", "old");
    then_edit("T", "new");
    const RefusingClass refusing("Edit", 2);
    boxes.while_shown([] { SendMessageA(main_window, WM_COMMAND, MAKEWPARAM(ok_id, BN_CLICKED), 0); });
    then([] { select("U"); });
    expect_fatal("Unable to create dir box");
    EXPECT_EQ(text_value(agent_key, "V"), "old");
}

TEST_F(StartUp, TheQuitMessagesValueIsTheExitCode) {
    then([] { PostQuitMessage(7); });
    EXPECT_EQ(run(), 7);
}

} // namespace
