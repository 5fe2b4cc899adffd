#include "platform/win32.h"
#include "substitute/control.h"
#include "support/clean_system.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class Clock : public CleanSystem {};

TEST_F(Clock, StandsStillButForSleepAndTheTest) {
    const std::uint64_t start = GetTickCount64();
    EXPECT_EQ(GetTickCount64(), start);
    Sleep(10);
    EXPECT_EQ(GetTickCount64(), start + 10);
    substitute::advance_clock(600'000);
    EXPECT_EQ(substitute::clock_now(), start + 600'010);
}

TEST_F(Clock, WrapsIn32Bits) {
    substitute::advance_clock(0x100000000ULL - substitute::clock_now() - 1);
    EXPECT_EQ(GetTickCount(), 0xFFFFFFFFU);
    Sleep(2);
    EXPECT_EQ(GetTickCount(), 1U);
    EXPECT_EQ(GetTickCount64(), 0x100000001ULL);
}

TEST_F(Clock, CallsItsHookAfterTimePassedAndNeverInsideItself) {
    const std::uint64_t start = substitute::clock_now();
    std::vector<std::uint64_t> times;
    substitute::on_clock([&](std::uint64_t now) {
        times.push_back(now - start);
        Sleep(1);
    });
    Sleep(10);
    substitute::advance_clock(5);
    EXPECT_THAT(times, ElementsAre(10, 16));
    EXPECT_EQ(substitute::clock_now(), start + 17);
    clean_system();
    Sleep(10);
    EXPECT_EQ(times.size(), 2U);
}

TEST_F(Clock, RunsThroughAWaitThatNothingEnds) {
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const std::uint64_t start = substitute::clock_now();
    EXPECT_EQ(WaitForSingleObject(event, 30'000), WAIT_TIMEOUT);
    EXPECT_EQ(substitute::clock_now(), start + 30'000);
    substitute::on_clock([&](std::uint64_t) { SetEvent(event); });
    EXPECT_EQ(WaitForSingleObject(event, 30'000), WAIT_OBJECT_0);
    CloseHandle(event);
}

TEST_F(Clock, EventsFailAtThePlannedCall) {
    for (const char* const function : {"CreateEventA", "OpenEventA", "SetEvent", "CloseHandle"})
        substitute::fail_call(function, 1, 1450);
    SetLastError(0);
    EXPECT_EQ(CreateEventA(nullptr, FALSE, FALSE, "name"), nullptr);
    EXPECT_EQ(GetLastError(), 1450U);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, "name");
    EXPECT_EQ(OpenEventA(EVENT_ALL_ACCESS, FALSE, "name"), nullptr);
    EXPECT_FALSE(SetEvent(event));
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_TIMEOUT);
    EXPECT_FALSE(CloseHandle(event));
    EXPECT_EQ(substitute::open_events(), 1);
    EXPECT_TRUE(CloseHandle(event));
    EXPECT_EQ(substitute::open_events(), 0);
}

} // namespace
