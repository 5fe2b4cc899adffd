// The whole program while the agent's service stops.
#include "app/main_window_controls.h"
#include "substitute/control.h"
#include "support/program.h"
#include "support/registry.h"
#include "window/top_level.h"

#include <gmock/gmock.h>

namespace {

using testing::Each;
using testing::SizeIs;

constexpr char spec_text[] = "SOFTWARE\\TavrinTests\\Agent\nAgent\nTavrinAgent\n"
                             "!All\n$Name\nName\nh\nString\n$Domain\nDomain\nh\nString\n";

class StopWait : public ProgramTest {
protected:
    StopWait() {
        spec_file("A", spec_text);
        set_text(agent_key, "Name", "web1");
        substitute::set_service("TavrinAgent", {.stop_time = 2000});
        then_edit("Name", "web2");
        then([] { SendMessageA(control(ok_id), BM_CLICK, 0, 0); });
    }
    /// Runs once, in the middle of the wait.
    static void while_stopping(std::function<void()> step) {
        substitute::on_clock([step = std::move(step)](std::uint64_t) {
            substitute::on_clock([](std::uint64_t) {});
            step();
        });
    }
    static std::string stored() { return text_value(agent_key, "Name"); }
};

TEST_F(StopWait, TheMainWindowIsDisabledAllTheWhile) {
    std::vector<bool> enabled;
    substitute::on_clock([&](std::uint64_t) { enabled.push_back(IsWindowEnabled(main_window) != FALSE); });
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(enabled, SizeIs(200));
    EXPECT_THAT(enabled, Each(false));
    EXPECT_EQ(stored(), "web2");
}

TEST_F(StopWait, TheMainWindowIsDisabledWhileItIsAskedAndWritten) {
    bool enabled = true;
    boxes.while_shown([&] { enabled = IsWindowEnabled(main_window) != FALSE; });
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(enabled);
}

TEST_F(StopWait, ATextThatIsThrownInItEndsTheProgramBeforeAnythingIsWritten) {
    while_stopping([] {
        substitute::fail_call("CreateWindowExA");
        select("Domain");
    });
    EXPECT_EQ(run(), 1);
    ASSERT_THAT(boxes.seen(), SizeIs(2));
    EXPECT_EQ(boxes.seen()[1].text, "Unable to create group box");
    EXPECT_EQ(boxes.seen()[1].caption, "Error!");
    EXPECT_EQ(boxes.seen()[1].style, MB_OK | MB_ICONEXCLAMATION);
    EXPECT_EQ(stored(), "web1");
    EXPECT_EQ(substitute::service_counts("TavrinAgent").starts, 0);
}

} // namespace
