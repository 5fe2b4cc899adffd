// The program is ended from outside at random moments while it applies changes. Each value is then either old
// or new, the next start shows them, and the next OK starts the service again, whatever state it was in.
#include "soak/many_values.h"

#include "e2e/fixture.h"

#include <cstdlib>
#include <iostream>
#include <random>

namespace soak {
namespace {

/// The phases in which the program is killed.
enum class From { ok, agreed_restart, first_write };

struct Phase {
    const char* name;
    From from;
    const char* service;
    int kills_of_a_dozen;
};
std::ostream& operator<<(std::ostream& out, const Phase& phase) { return out << phase.name; }

constexpr Phase phases[] = {
    {"OkWithoutAService", From::ok, "", 6},
    {"OkWithARestart", From::agreed_restart, "TavrinAgent", 3},
    {"WritesOfARestart", From::first_write, "TavrinAgent", 3},
};

double milliseconds() {
    LARGE_INTEGER now;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(now.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

unsigned chosen_seed() {
    const std::string wanted = e2e::environment("TAVRIN_KILL_SEED");
    return wanted.empty() ? std::random_device()() : static_cast<unsigned>(std::stoul(wanted));
}

class Killed : public e2e::Sample, public testing::WithParamInterface<Phase> {
protected:
    void SetUp() override {
        Sample::SetUp();
        values.describe(GetParam().service);
        if (*GetParam().service)
            e2e::install_agent();
    }

    /// An agent that was asked to stop or start does so even after the kill.
    static void wait_until_settled() {
        if (*GetParam().service)
            e2e::wait_for("a settled service", [] {
                const DWORD state = e2e::agent_state();
                return state == SERVICE_STOPPED || state == SERVICE_RUNNING;
            });
    }

    void prepare() const {
        values.make_old();
        wait_until_settled();
        if (*GetParam().service && e2e::agent_state() != SERVICE_RUNNING)
            e2e::start_agent();
    }

    /// Presses OK and returns at the moment from which this phase counts, which it returns.
    double begin(e2e::Tool& tool) const {
        const FirstWrite first_write;
        const double pressed = milliseconds();
        tool.press(e2e::ok_id);
        if (GetParam().from == From::ok)
            return pressed;
        const e2e::Box question = tool.box();
        const double agreed = milliseconds();
        question.press(IDYES);
        if (GetParam().from == From::first_write)
            return wait_for_first_write(first_write, tool) ? milliseconds() : agreed;
        return agreed;
    }

    /// If nothing was written, what the program shows says why.
    static bool wait_for_first_write(const FirstWrite& first_write, e2e::Tool& tool) {
        try {
            return first_write.wait(tool.process_handle());
        } catch (const std::runtime_error& late) {
            throw std::runtime_error(late.what() + (", but a box came: " + tool.box().text));
        }
    }

    /// The duration of the phase without a kill.
    double duration() const {
        prepare();
        e2e::Tool tool;
        values.edit_all(tool);
        const double start = begin(tool);
        if (GetParam().from == From::first_write)
            e2e::wait_for("the last write", [&] { return values.count_new() == values.size(); });
        else
            tool.exit_code();
        const double took = milliseconds() - start;
        tool.exit_code(); // or the destructor would end it while the service is being started
        return took;
    }

    void kill_after(double delay) const {
        prepare();
        e2e::Tool tool;
        values.edit_all(tool);
        const double end = begin(tool) + delay;
        while (milliseconds() < end)
            SwitchToThread();
        TerminateProcess(tool.process_handle(), 99);
        tool.exit_code();
    }

    /// What a user does after the accident: starts the program, looks, changes something and presses OK.
    void recover() const {
        wait_until_settled();
        e2e::Tool tool;
        values.expect_shown(tool);
        values.edit_first(tool, "after the accident");
        tool.press(e2e::ok_id);
        if (*GetParam().service)
            tool.box().press(IDYES);
        EXPECT_EQ(tool.exit_code(), 0u);
        EXPECT_EQ(values.first_value(), "after the accident");
        if (*GetParam().service)
            e2e::expect_agent(SERVICE_RUNNING);
    }

    const bool is_long = !e2e::environment("TAVRIN_SOAK").empty();
    const ManyValues values = ManyValues(is_long ? 200 : 60);
};

TEST_P(Killed, LeavesOldOrNewValuesAndNothingThatTheNextStartCannotHandle) {
    const int kills = GetParam().kills_of_a_dozen * (is_long ? 33 : 1);
    const unsigned seed = chosen_seed();
    std::mt19937 generator(seed);
    const double whole = duration();
    std::uniform_real_distribution<double> moments(0, whole);
    int before = 0;
    int within = 0;
    int after = 0;
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        kill_after(moments(generator));
        const int found = values.count_new();
        ++(found == 0 ? before : found == values.size() ? after : within);
        recover();
    }
    std::cout << GetParam().name << ": " << kills << " kills within " << whole << " ms (seed " << seed
              << "): " << before << " before the writes, " << within << " within, " << after << " after"
              << std::endl;
    // A kill during a second of waiting for the service seldom meets the few milliseconds of writing.
    if (is_long && GetParam().from != From::agreed_restart) {
        EXPECT_GT(within, kills / 10);
    }
}

INSTANTIATE_TEST_SUITE_P(During, Killed, testing::ValuesIn(phases),
                         [](const auto& instance) { return instance.param.name; });

} // namespace
} // namespace soak
