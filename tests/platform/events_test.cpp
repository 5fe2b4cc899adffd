#include "platform/win32.h"
#include "support/system.h"

#include <gmock/gmock.h>

namespace {

const char* const event_name = "TavrinTestsEvent";

HANDLE create(const char* name, BOOL manual_reset = FALSE) {
    return CreateEventA(nullptr, manual_reset, FALSE, name);
}

/// Takes the signal of an auto-reset event, if there is one.
bool is_signalled(HANDLE event) { return WaitForSingleObject(event, 0) == WAIT_OBJECT_0; }

class Events : public CleanSystem {};

TEST_F(Events, HaveOneNameForAll) {
    SetLastError(7);
    const HANDLE mine = create(event_name);
    EXPECT_EQ(GetLastError(), 0U);
    const HANDLE theirs = create(event_name);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    const HANDLE opened = OpenEventA(SYNCHRONIZE, FALSE, event_name);
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
    const HANDLE event = create(event_name, TRUE);
    SetEvent(event);
    EXPECT_TRUE(is_signalled(event));
    EXPECT_TRUE(is_signalled(event));
    CloseHandle(event);
}

TEST_F(Events, AreGoneWithTheirLastHandle) {
    const HANDLE first = create(event_name);
    SetEvent(first);
    CloseHandle(first);
    SetLastError(0);
    EXPECT_EQ(OpenEventA(SYNCHRONIZE, FALSE, event_name), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
    const HANDLE event = create(event_name);
    EXPECT_FALSE(is_signalled(event));
    CloseHandle(event);
}

TEST_F(Events, AreNamedWithCase) {
    const HANDLE event = create(event_name);
    EXPECT_EQ(OpenEventA(SYNCHRONIZE, FALSE, "TAVRINTESTSEVENT"), nullptr);
    CloseHandle(event);
}

TEST_F(Events, WithoutANameAreTheirOwn) {
    const HANDLE one = create(nullptr);
    const HANDLE other = create(nullptr);
    SetEvent(one);
    EXPECT_FALSE(is_signalled(other));
    EXPECT_TRUE(is_signalled(one));
    CloseHandle(one);
    CloseHandle(other);
}

TEST_F(Events, KnowTheNameSpaces) {
    const HANDLE global = create("Global\\TavrinTestsEvent");
    SetEvent(global);
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

} // namespace
