// Long use: at the end, the program holds as much as after everything had been done for the first time.
#include "soak/busy_user.h"
#include "soak/census.h"

#include "e2e/fixture.h"

#include <iostream>

namespace soak {
namespace {

/// Private bytes cannot be equal, because the blocks that the system leaks take up pages. A program that
/// leaked a page with every fifth test or box would exceed this in the long run; leaks in the heaps are
/// counted block by block.
constexpr std::size_t kept_bytes = 1536 * 1024;

struct Amounts {
    int rounds; ///< of all pages; an even number leaves the settings as they were
    int tests;
    int scans;
    int boxes;
};

/// script/soak asks for the long run.
bool is_long_run() { return !e2e::environment("TAVRIN_SOAK").empty(); }

class LongUse : public e2e::Sample {
protected:
    void SetUp() override {
        if (e2e::environment("TAVRIN_STAGE").empty())
            GTEST_SKIP() << "no sample servers: run through script/isolated tests/e2e/stage";
        Sample::SetUp();
        e2e::write_value(e2e::agent_key, "ServerList", "10.9.0.2");
    }

    static void use(BusyUser& user, const Amounts& amounts) {
        user.switch_pages(amounts.rounds);
        user.test_the_connection(amounts.tests);
        user.scan(amounts.scans);
        user.open_and_close_boxes(amounts.boxes);
    }
};

/// The figures that are reported and compared.
struct Figures {
    Holdings held;
    long long blocks; ///< in the heaps, without those that the system lost
    std::size_t bytes;
};

TEST_F(LongUse, LeavesNothingBehind) {
    const bool is_long = is_long_run();
    const Amounts first = is_long ? Amounts{8, 100, 10, 100} : Amounts{2, 3, 1, 3};
    const Amounts part = is_long ? Amounts{78, 100, 10, 100} : Amounts{8, 10, 1, 15};
    const int parts = is_long ? 10 : 2;
    e2e::Tool tool;
    Census census(tool);
    BusyUser user(tool);
    census.count(); // what the first count allocates stays
    const long long per_text = census.blocks_lost_by(Request::use_text);
    const long long per_test = census.blocks_lost_by(Request::use_test);
    const long long per_scan = census.blocks_lost_by(Request::use_scan);
    const auto look = [&](const std::string& when) {
        const long long lost =
            per_text * user.texts_shown() + per_test * user.tests_made() + per_scan * user.scans_made();
        const Figures now = {census.count(), census.heap_use().blocks - lost, census.private_bytes()};
        std::cout << when << ": " << now.held << ", " << now.blocks << " blocks in the heaps beside " << lost
                  << " lost by the system, " << now.bytes << " private bytes" << std::endl;
        return now;
    };
    use(user, first);
    const Figures before = look("at first");
    // Objects that are created once, at their first use, stay. A leak shows in every part.
    Figures last = before;
    int grown = 0;
    for (int done = 1; done <= parts; ++done) {
        use(user, part);
        const Figures now = look(std::to_string(done) + "/" + std::to_string(parts));
        grown += now.held == last.held && now.blocks == last.blocks ? 0 : 1;
        EXPECT_LE(now.bytes, before.bytes + kept_bytes);
        last = now;
    }
    EXPECT_LE(grown, 1);
}

} // namespace
} // namespace soak
