#include "e2e/fixture.h"

#include <sddl.h>

namespace e2e {
namespace {

const TreePath measure = {"Tavrin Agent", "Maintenance", "Measure now"};
constexpr char event_name[] = "Global\\TavrinAgentMeasure";

class Event : public Sample {};

std::size_t signals_noted() {
    std::size_t count = 0;
    const std::string notes = agent_notes();
    for (std::size_t at = notes.find("signalled\n"); at != std::string::npos;
         at = notes.find("signalled\n", at + 1))
        ++count;
    return count;
}

/// Who may do what with the event, in the words of security descriptors.
std::string access_to(HANDLE event) {
    BYTE descriptor[1024];
    DWORD size = 0;
    char* words = nullptr;
    if (!GetKernelObjectSecurity(event, DACL_SECURITY_INFORMATION, descriptor, sizeof descriptor, &size) ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorA(descriptor, SDDL_REVISION_1,
                                                              DACL_SECURITY_INFORMATION, &words, nullptr))
        return "not told";
    const std::string result = words;
    LocalFree(words);
    return result;
}

/// The service runs as SYSTEM, the tool as an administrator: without this it could not open the event.
TEST_F(Event, OfTheAgentLetsAdministratorsIn) {
    install_agent();
    start_agent();
    const HANDLE event = OpenEventA(READ_CONTROL, FALSE, event_name);
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(access_to(event), "D:(A;;0x1f0003;;;SY)(A;;0x1f0003;;;BA)");
    CloseHandle(event);
}

TEST_F(Event, EachPressReachesTheRunningAgentOnce) {
    install_agent();
    start_agent();
    Tool tool;
    tool.select(measure);
    for (std::size_t presses = 1; presses <= 2; ++presses) {
        tool.press_on_page("Measure now", "Execute");
        const Box box = tool.box();
        EXPECT_EQ(box.caption, "Action taken");
        EXPECT_EQ(box.text, "The action has been taken.");
        box.press(IDOK);
        wait_for("the agent's note", [&] { return signals_noted() == presses; });
    }
    tool.expect_changes(false);
    tool.press(close_id);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(signals_noted(), 2u);
}

/// Another kind of object has the name, so no event with this name can be created.
TEST_F(Event, FailedSignalEndsTheProgramAbnormally) {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, event_name);
    ASSERT_NE(mutex, nullptr);
    Tool tool;
    tool.select(measure);
    tool.press_on_page("Measure now", "Execute");
    const DWORD code = tool.exit_code();
    EXPECT_NE(code, 0u);
    EXPECT_NE(code, 1u);
    CloseHandle(mutex);
}

} // namespace
} // namespace e2e
