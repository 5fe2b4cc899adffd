/// Calls that the program makes before its first window, and that no test of the window would notice.
#include "substitute/control.h"
#include "support/program.h"
#include "window/wait_window.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

class StartUpCalls : public ProgramTest {
protected:
    /// How many of the program's calls came before the first one of `function`.
    static std::ptrdiff_t place_of_call(const std::string& function) {
        const std::vector<std::string> calls = substitute::calls();
        return std::find(calls.begin(), calls.end(), function) - calls.begin();
    }

    static WNDCLASSEXA class_of_name(const char* name) {
        const substitute::OwnCalls own;
        WNDCLASSEXA details{};
        details.cbSize = sizeof details;
        EXPECT_TRUE(GetClassInfoExA(nullptr, name, &details)) << name;
        return details;
    }
};

TEST_F(StartUpCalls, NoGhostTakesTheWindowsPlaceWhileTheProgramIsBusy) {
    then([] {});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(substitute::call_count("DisableProcessWindowsGhosting"), 1);
    EXPECT_LT(place_of_call("DisableProcessWindowsGhosting"), place_of_call("CreateWindowExA"));
}

TEST_F(StartUpCalls, BothClassesHaveThePictureThatIsMadeForTheSmallIcon) {
    then([] { const WaitWindow wait("text"); });
    EXPECT_EQ(run(), 0);
    for (const char* name : {"trconfigclass", "tavrin_service_win"}) {
        const WNDCLASSEXA details = class_of_name(name);
        EXPECT_EQ(details.hIcon, LoadIconA(nullptr, "tavrin")) << name;
        EXPECT_EQ(details.hIconSm, LoadImageA(nullptr, "tavrin", IMAGE_ICON, 16, 16, LR_DEFAULTCOLOR))
            << name;
        EXPECT_NE(static_cast<HANDLE>(details.hIconSm), static_cast<HANDLE>(details.hIcon)) << name;
    }
}

} // namespace
