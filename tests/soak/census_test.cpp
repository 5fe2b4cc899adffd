// The census itself: one leaked object of any kind makes it one higher, and nothing else does.
#include "soak/census.h"

#include "e2e/fixture.h"

namespace soak {
namespace {

class CensusTest : public e2e::Sample {};

Holdings difference(const Holdings& after, const Holdings& before) {
    return {{after.user.windows - before.user.windows, after.user.menus - before.user.menus,
             after.user.icons - before.user.icons, after.user.accelerators - before.user.accelerators},
            after.gdi - before.gdi,
            after.kernel - before.kernel};
}

TEST_F(CensusTest, NoticesOneLeakedObjectOfEachKind) {
    const struct {
        Request leak;
        Holdings more;
    } leaks[] = {
        {Request::leak_window, {{1, 0, 0, 0}, 0, 0}}, {Request::leak_menu, {{0, 1, 0, 0}, 0, 0}},
        {Request::leak_brush, {{0, 0, 0, 0}, 1, 0}},  {Request::leak_event, {{0, 0, 0, 0}, 0, 1}},
        {Request::leak_icon, {{0, 0, 1, 0}, 1, 0}}, // an icon of two colours holds a bitmap
    };
    e2e::Tool tool;
    Census census(tool);
    tool.select(e2e::agent_name);
    census.count(); // what the first count sets up stays
    Holdings before = census.count();
    EXPECT_EQ(census.count(), before);
    for (const auto& [leak, more] : leaks) {
        census.leak(leak);
        const Holdings after = census.count();
        EXPECT_EQ(difference(after, before), more);
        before = after;
    }
}

TEST_F(CensusTest, NoticesOneLeakedBlockOfMemory) {
    e2e::Tool tool;
    Census census(tool);
    tool.select(e2e::agent_name);
    census.heap_use(); // what the first count sets up stays
    const HeapUse before = census.heap_use();
    census.leak(Request::leak_block);
    const HeapUse after = census.heap_use();
    EXPECT_EQ(after.blocks, before.blocks + 1);
    EXPECT_GE(after.bytes, before.bytes + 40);
}

} // namespace
} // namespace soak
