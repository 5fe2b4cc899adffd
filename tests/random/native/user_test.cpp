// A user who acts at random, over the substitute.
#include "app/main_window_controls.h"
#include "random/native/native_session.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <set>

namespace random_user {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t steps_a_session = 60;
constexpr unsigned session_count = 1000;
constexpr unsigned shrinking_attempts = 500;

Outcome play(std::uint32_t seed, const std::vector<Step>& steps) { return NativeSession::play(seed, steps); }

TEST(RandomUser, FindsWhatTheyLeftAndGetsWhatTheySaw) {
    play_sessions(order(session_count), steps_a_session, play, shrinking_attempts, {});
}

TEST(RandomUser, DoesTheSameAgainForTheSameSeed) {
    const Outcome once = play(11, steps_of(11, steps_a_session));
    EXPECT_EQ(once.notes, play(11, steps_of(11, steps_a_session)).notes);
    EXPECT_NE(once.notes, play(12, steps_of(12, steps_a_session)).notes);
}

TEST(RandomUser, MeetsEveryKindOfEntryAndOfFile) {
    std::set<const PageKind*> met;
    int old_files = 0;
    int missing_files = 0;
    int tests = 0;
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        for (const SpecFile& file : world_of(seed, {}).files) {
            old_files += file.old_syntax ? 1 : 0;
            missing_files += file.is_missing ? 1 : 0;
            tests += file.test_titles ? 1 : 0;
            for (const Group& group : file.groups) {
                for (const Entry& entry : group.entries)
                    met.insert(entry.kind);
            }
        }
    }
    EXPECT_EQ(met.size(), page_kinds.size());
    EXPECT_GT(old_files, 20);
    EXPECT_GT(missing_files, 2);
    EXPECT_GT(tests, 20);
}

/// Loses every text that the user does not just type, as a program would that reads it from a dead control.
void lose_text(std::size_t) {
    if (page() == nullptr)
        return;
    for (const HWND each : page_controls()) {
        char name[16] = "";
        GetClassNameA(each, name, sizeof name);
        const std::string text = ::text_of(each);
        if (std::string(name) == "Edit" && each != GetFocus() && !text.empty() && text != "?7")
            SetWindowTextA(each, "?7");
    }
}

TEST(RandomUser, NoticesALostTextAndSaysShortlyHow) {
    unsigned noticed = 0;
    for (std::uint32_t seed = 1; seed <= 20; ++seed) {
        const auto fails = [seed](const std::vector<Step>& steps) {
            return !NativeSession::play(seed, steps, lose_text).fault.empty();
        };
        const std::vector<Step> all = steps_of(seed, steps_a_session);
        if (!fails(all))
            continue;
        ++noticed;
        const std::vector<Step> few = shortened(all, fails, shrinking_attempts);
        EXPECT_LE(few.size(), 8U);
        const Outcome outcome = NativeSession::play(seed, few, lose_text);
        EXPECT_THAT(report(seed, outcome, world_of(seed, {})),
                    HasSubstr("TAVRIN_USER_SEED=" + std::to_string(seed) + " TAVRIN_USER_SESSIONS=1"));
        EXPECT_THAT(outcome.notes, Not(testing::IsEmpty()));
    }
    EXPECT_GE(noticed, 5U);
}

TEST(RandomUser, NoticesButtonsThatSayTheWrongThing) {
    const auto lie = [](std::size_t step) {
        if (step == 5)
            SetWindowTextA(control(close_id), "Abort");
    };
    EXPECT_THAT(NativeSession::play(1, steps_of(1, steps_a_session), lie).fault,
                HasSubstr("the button says \"Abort\""));
}

TEST(RandomUser, NoticesAFocusThatIsNowhere) {
    const auto take_away = [](std::size_t step) {
        if (step == 8)
            SetFocus(nullptr);
    };
    EXPECT_EQ(NativeSession::play(1, steps_of(1, steps_a_session), take_away).fault,
              "the focus is on nothing");
}

TEST(RandomUserDeathTest, ASessionThatEndsTheSuiteIsNamed) {
    const auto die = [](std::size_t) { std::abort(); };
    EXPECT_DEATH(NativeSession::play(7, {}, die), "TAVRIN_USER_SEED=7 TAVRIN_USER_SESSIONS=1");
}

} // namespace
} // namespace random_user
