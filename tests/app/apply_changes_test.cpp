// The apply sequence as far as a machine without the agent's service can show it;
// tests/app/apply_changes_native_test.cpp has every branch over scripted services.
#include "app/apply_changes.h"
#include "support/boxes.h"
#include "support/fake_entry.h"
#include "support/system.h"

#include <gmock/gmock.h>
#include <string>

namespace {

class ApplyWithoutService : public CleanSystem {
protected:
    ApplyWithoutService() {
        configuration.name = "Tavrin Agent";
        configuration.entry_items = {{reinterpret_cast<HTREEITEM>(1), &entry}};
        configuration.changed_entries = {&entry};
        entry.is_changed = true;
    }

    void expect_manual_restart() {
        apply_changes(configuration);
        ASSERT_EQ(boxes.seen().size(), 1u);
        EXPECT_EQ(boxes.seen()[0].caption, "Service must be restarted manually");
        EXPECT_EQ(boxes.seen()[0].text,
                  "You have changed the configuration of the Tavrin Agent. In order for these changes to be "
                  "effectuated, you will have to restart the Tavrin Agent service manually.");
        EXPECT_EQ(entry.writes, 1);
    }

    Boxes boxes;
    Configuration configuration{false};
    FakeEntry entry{"entry"};
};

TEST_F(ApplyWithoutService, WritesInSilenceWhenNoneIsNamed) {
    apply_changes(configuration);
    EXPECT_TRUE(boxes.seen().empty());
    EXPECT_EQ(entry.writes, 1);
    EXPECT_TRUE(configuration.changed_entries.empty());
}

TEST_F(ApplyWithoutService, AsksForAManualRestartOfOneThatDoesNotExist) {
    configuration.serviceName = "TavrinNoSuchService";
    expect_manual_restart();
}

TEST_F(ApplyWithoutService, AsksForAManualRestartOfOneWhoseNameIsLongerThanTheSystemAllows) {
    configuration.serviceName = std::string(5000, 'x');
    expect_manual_restart();
}

TEST_F(ApplyWithoutService, AsksForAManualRestartOfOneWithAnImpossibleName) {
    configuration.serviceName = "a/b\\c\x01";
    expect_manual_restart();
}

} // namespace
