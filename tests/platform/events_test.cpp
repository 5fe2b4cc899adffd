#include "platform/win32.h"
#include "support/clean_system.h"

#include <gmock/gmock.h>

namespace {

const char* const event_name = "TavrinTestsEvent";

HANDLE create(const char* name, BOOL manual_reset = FALSE, BOOL signalled = FALSE) {
    return CreateEventA(nullptr, manual_reset, signalled, name);
}

/// Takes the signal of an auto-reset event, if there is one.
bool is_signalled(HANDLE event) { return WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }

class Events : public CleanSystem {};

TEST_F(Events, HaveOneNameForAll) {
    SetLastError(7);
    const HANDLE mine = create(event_name);
    EXPECT_EQ(GetLastError(), 0U);
    const HANDLE theirs = create(event_name, TRUE, TRUE);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    const HANDLE opened = OpenEventA(SYNCHRONIZE, FALSE, event_name);
    EXPECT_FALSE(is_signalled(theirs)) << "it is the first one, which was not signalled";
    EXPECT_TRUE(SetEvent(mine));
    EXPECT_TRUE(is_signalled(opened));
    EXPECT_FALSE(is_signalled(theirs)) << "the wait took the signal";
    for (const HANDLE event : {mine, theirs, opened})
        EXPECT_TRUE(CloseHandle(event));
}

TEST_F(Events, CountManySignalsAsOne) {
    const HANDLE event = create(event_name);
    SetEvent(event);
    SetEvent(event);
    EXPECT_TRUE(is_signalled(event));
    EXPECT_FALSE(is_signalled(event));
    CloseHandle(event);
}

TEST_F(Events, StaySignalledWithManualReset) {
    const HANDLE event = create(event_name, TRUE, TRUE);
    EXPECT_TRUE(is_signalled(event));
    EXPECT_TRUE(is_signalled(event));
    CloseHandle(event);
}

TEST_F(Events, AreGoneWithTheirLastHandle) {
    CloseHandle(create(event_name, TRUE, TRUE));
    SetLastError(0);
    EXPECT_EQ(OpenEventA(EVENT_ALL_ACCESS, FALSE, event_name), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
    const HANDLE event = create(event_name);
    EXPECT_FALSE(is_signalled(event));
    CloseHandle(event);
}

TEST_F(Events, AreNamedWithCase) {
    const HANDLE event = create(event_name);
    EXPECT_EQ(OpenEventA(EVENT_ALL_ACCESS, FALSE, "TAVRINTESTSEVENT"), nullptr);
    CloseHandle(event);
}

TEST_F(Events, WithoutANameAreTheirOwn) {
    const HANDLE one = create(nullptr, FALSE, TRUE);
    const HANDLE other = create(nullptr);
    EXPECT_FALSE(is_signalled(other));
    EXPECT_TRUE(is_signalled(one));
    CloseHandle(one);
    CloseHandle(other);
    SetLastError(0);
    EXPECT_EQ(OpenEventA(EVENT_ALL_ACCESS, FALSE, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(Events, KnowTheNameSpaces) {
    const HANDLE global = create("Global\\TavrinTestsEvent", FALSE, TRUE);
    const HANDLE local = create("Local\\TavrinTestsEvent");
    EXPECT_FALSE(is_signalled(local));
    const HANDLE same = create(event_name);
    SetEvent(same);
    EXPECT_TRUE(is_signalled(local));
    EXPECT_TRUE(is_signalled(global));
    for (const HANDLE event : {global, local, same})
        CloseHandle(event);
}

TEST_F(Events, RefuseImpossibleNames) {
    SetLastError(0);
    EXPECT_EQ(create("a\\b"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(create(std::string(260, 'x').c_str()), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILENAME_EXCED_RANGE});
    const HANDLE longest = create(std::string(259, 'x').c_str());
    EXPECT_NE(longest, nullptr);
    CloseHandle(longest);
}

TEST_F(Events, AllowWhatTheyWereOpenedFor) {
    const HANDLE event = create(event_name);
    const HANDLE waiter = OpenEventA(SYNCHRONIZE, FALSE, event_name);
    SetLastError(0);
    EXPECT_FALSE(SetEvent(waiter));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    const HANDLE setter = OpenEventA(EVENT_MODIFY_STATE, FALSE, event_name);
    SetLastError(0);
    EXPECT_EQ(WaitForSingleObject(setter, 0), DWORD{WAIT_FAILED});
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(SetEvent(setter));
    EXPECT_TRUE(is_signalled(event));
    for (const HANDLE handle : {event, waiter, setter})
        CloseHandle(handle);
}

TEST_F(Events, ClosedAreInvalid) {
    const HANDLE event = create(event_name);
    CloseHandle(event);
    for (const HANDLE handle : {event, HANDLE{nullptr}}) {
        SetLastError(0);
        EXPECT_FALSE(SetEvent(handle));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
        SetLastError(0);
        EXPECT_EQ(WaitForSingleObject(handle, 0), DWORD{WAIT_FAILED});
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
        SetLastError(0);
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    }
}

TEST_F(Events, EndAWaitByTheClock) {
    const HANDLE event = create(event_name);
    const auto before = GetTickCount64();
    EXPECT_EQ(WaitForSingleObject(event, 20), DWORD{WAIT_TIMEOUT});
    EXPECT_GE(GetTickCount64(), before + 10) << "the system's ticks are coarse";
    CloseHandle(event);
}

} // namespace
