#include "app/start_up.h"

#include "net/socket.h"
#include "substitute/control.h"
#include "support/program.h"
#include "window/top_level.h"
#include "window/wait_window.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

/// The index of the first call of `function`; the number of calls if there is none.
std::ptrdiff_t first_call(const std::string& function) {
    const std::vector<std::string> calls = substitute::calls();
    return std::find(calls.begin(), calls.end(), function) - calls.begin();
}

class NativeStartUp : public ProgramTest {
protected:
    NativeStartUp() { net::started = false; }
    ~NativeStartUp() override { net::started = false; }

    static WNDCLASSEXA class_of_name(const char* name) {
        const substitute::OwnCalls own;
        WNDCLASSEXA details{};
        details.cbSize = sizeof details;
        EXPECT_TRUE(GetClassInfoExA(nullptr, name, &details)) << name;
        return details;
    }
};

TEST_F(NativeStartUp, WithoutSocketsThereIsOneBoxAndNoWindow) {
    substitute::set_system_text(WSASYSNOTREADY, "The network is not ready.\r\n");
    substitute::fail_call("WSAStartup", 1, WSASYSNOTREADY);
    EXPECT_EQ(run(), 1);
    ASSERT_EQ(substitute::shown_boxes().size(), 1U);
    const substitute::ShownBox& box = substitute::shown_boxes()[0];
    EXPECT_EQ(box.text, "Error initializing socket subsystem: "
                        "Error with wsastartup: The network is not ready. (10091)\n");
    EXPECT_EQ(box.caption, "Error!");
    EXPECT_EQ(box.style, MB_OK | MB_ICONEXCLAMATION);
    EXPECT_EQ(box.owner, nullptr);
    EXPECT_EQ(main_window, nullptr);
    EXPECT_EQ(substitute::call_count("RegisterClassExA"), 0);
    EXPECT_EQ(substitute::call_count("CreateWindowExA"), 0);
    EXPECT_FALSE(net::started);
}

TEST_F(NativeStartUp, AsksForTheSystemsPartsBeforeAnyWindow) {
    then([] {
        EXPECT_TRUE(substitute::common_controls_initialized());
        EXPECT_EQ(substitute::com_initialized(), 1);
    });
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(net::started);
    EXPECT_LT(first_call("InitCommonControls"), first_call("CoInitialize"));
    EXPECT_LT(first_call("CoInitialize"), first_call("WSAStartup"));
    EXPECT_LT(first_call("WSAStartup"), first_call("RegisterClassExA"));
    EXPECT_LT(first_call("RegisterClassExA"), first_call("CreateWindowExA"));
}

TEST_F(NativeStartUp, ComIsInitialisedOnceBeforeTheFolderBrowser) {
    spec_file("A", "SOFTWARE\\TavrinTests\\Agent\nAgent\n!G\n$Folder\nFolder\nh\nDirectory\n");
    then([] { select("Folder"); });
    then([] { SendMessageA(page_controls().at(1), BM_CLICK, 0, 0); });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(substitute::call_count("SHBrowseForFolderA"), 1);
    EXPECT_LT(first_call("CoInitialize"), first_call("SHBrowseForFolderA"));
    EXPECT_EQ(substitute::call_count("CoInitialize"), 1);
}

TEST_F(NativeStartUp, NoGhostTakesTheWindowsPlaceWhileTheProgramIsBusy) {
    then([] {});
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(substitute::call_count("DisableProcessWindowsGhosting"), 1);
    EXPECT_LT(first_call("DisableProcessWindowsGhosting"), first_call("CreateWindowExA"));
}

TEST_F(NativeStartUp, BothClassesHaveThePictureThatIsMadeForTheSmallIcon) {
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

TEST_F(NativeStartUp, TheLoopThatCannotRetrieveAMessageEndsWithZero) {
    then([] { substitute::fail_call("GetMessageA", 1); });
    then([] {});
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(boxes.seen(), IsEmpty());
}

} // namespace
