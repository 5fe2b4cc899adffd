#include "e2e/fixture.h"

namespace e2e {
namespace {

const TreePath kMeasure = {"Tavrin Agent", "Maintenance", "Measure now"};
constexpr char kEventName[] = "Global\\TavrinAgentMeasure";

class Event : public Sample {};

std::size_t signals_noted() {
    std::size_t count = 0;
    const std::string notes = agent_notes();
    for (std::size_t at = notes.find("signalled\n"); at != std::string::npos;
         at = notes.find("signalled\n", at + 1))
        ++count;
    return count;
}

TEST_F(Event, EachPressReachesTheRunningAgentOnce) {
    install_agent();
    start_agent();
    Tool tool;
    tool.select(kMeasure);
    for (std::size_t presses = 1; presses <= 2; ++presses) {
        tool.press_on_page("Measure now", "Execute");
        const Box box = tool.box();
        EXPECT_EQ(box.caption, "Action taken");
        EXPECT_EQ(box.text, "The action has been taken.");
        box.press(IDOK);
        wait_for("the agent's note", [&] { return signals_noted() == presses; });
    }
    tool.expect_changes(false);
    tool.press(kClose);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(signals_noted(), 2u);
}

TEST_F(Event, NobodyNeedsToListen) {
    Tool tool;
    tool.select(kMeasure);
    tool.press_on_page("Measure now", "Execute");
    EXPECT_EQ(tool.box().caption, "Action taken");
}

/// Something else than an event has the name, so that no event of that name can be made.
TEST_F(Event, FailedSignalEndsTheProgramAbnormally) {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, kEventName);
    ASSERT_NE(mutex, nullptr);
    Tool tool;
    tool.select(kMeasure);
    tool.press_on_page("Measure now", "Execute");
    const DWORD code = tool.exit_code();
    EXPECT_NE(code, 0u);
    EXPECT_NE(code, 1u);
    CloseHandle(mutex);
}

} // namespace
} // namespace e2e
