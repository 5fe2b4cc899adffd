// Input that arrives while the program is busy, from the system's own mouse and keyboard.
#include "e2e/fixture.h"

#include <fstream>
#include <iterator>

namespace e2e {
namespace {

using testing::HasSubstr;

const TreePath servers_page = {"Tavrin Agent", "Servers", "Server list"};
const TreePath log_page = {"Tavrin Agent", "Identity", "Log file"};
const TreePath action_page = {"Tavrin Agent", "Maintenance", "Measure now"};

/// Without waiting for anything: the program may be blocked.
void click_blindly(HWND control) {
    RECT area = {};
    GetWindowRect(control, &area);
    click_at({(area.left + area.right) / 2, (area.top + area.bottom) / 2});
}

/// Where a button of the frame is, a little inside of its right edge.
POINT place_on_frame(HWND window, LRESULT button) {
    RECT area = {};
    GetWindowRect(window, &area);
    const int y = area.top + GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
    for (int x = area.right; x > area.left; --x) {
        if (send(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == button)
            return {x - 3, y};
    }
    throw std::runtime_error("the frame has no button " + std::to_string(button));
}

std::size_t tests_of_slow_server() {
    std::ifstream file("Z:" + environment("TAVRIN_STAGE") + "/slow.txt");
    const std::string printed{std::istreambuf_iterator<char>(file), {}};
    std::size_t count = 0;
    for (std::size_t at = printed.find("wants:"); at != std::string::npos;
         at = printed.find("wants:", at + 1))
        ++count;
    return count;
}

class BadMoment : public Sample {
protected:
    void open(Tool& tool, const TreePath& page) {
        window = tool.window();
        bring_to_front(window);
        tool.select(page);
    }
    void expect_focus(HWND control, const std::string& what) {
        wait_for("the focus on " + what, [&] { return focus_of(window) == control; });
    }
    void tab_to(HWND control) {
        while (focus_of(window) != control) {
            const HWND before = focus_of(window);
            press_key(VK_TAB);
            wait_for("the next control", [&] { return focus_of(window) != before; });
        }
    }

    HWND window = nullptr;
};

TEST_F(BadMoment, ImpatientClicksAndKeysMakeOneTest) {
    write_value(agent_key, "ServerList", "10.9.0.2:5004");
    const std::size_t before = tests_of_slow_server();
    Tool tool;
    open(tool, servers_page);
    const HWND button = tool.control(test_connection);
    click(button);
    tool.wait_window();
    for (int more = 0; more < 3; ++more)
        click_blindly(button);
    press_key(VK_RETURN);
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Connection test successful");
    box.press(IDOK);
    expect_focus(button, "Test Connection");
    click(tool.control(close_id));
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(tests_of_slow_server(), before + 1);
}

TEST_F(BadMoment, OkDuringAScanWritesNothing) {
    Tool tool;
    open(tool, servers_page);
    const HWND list = tool.page("Server list").controls[0];
    replace_text(list, "typed");
    tool.expect_changes(true);
    const HWND ok = tool.control(ok_id);
    const POINT close_box = place_on_frame(window, HTCLOSE);
    click(tool.page_button("Server list", "Scan"));
    tool.wait_window();
    click_blindly(ok);
    click_at(close_box);
    wait_for("the servers found", [&] { return text_of(list).find("10.9.0.2") != std::string::npos; });
    click(list);
    expect_focus(list, "the list");
    EXPECT_EQ(read_value(agent_key, "ServerList"), "127.0.0.1");
}

TEST_F(BadMoment, AFatalTextIsShownAtOnceBesideABox) {
    write_value(agent_key, "Port", "x");
    Tool tool;
    open(tool, action_page);
    click(tool.page_button("Measure now", "Execute"));
    const HWND result = tool.box().window;
    click(tool.control(test_connection));
    tool.dialog("Error!");
    EXPECT_FALSE(IsWindow(result));
    const Box box = tool.box();
    EXPECT_THAT(box.text, HasSubstr("Error reading value: "));
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 1u);
}

TEST_F(BadMoment, AFileForAPageThatIsGoneIsDropped) {
    Tool tool;
    open(tool, log_page);
    click(tool.page_button("Log file", "..."));
    const HWND dialog = tool.dialog("File selection...");
    tool.select(agent_name);
    bring_to_front(dialog);
    wait_for("the name's field", [&] { return is_class(focus_of(dialog), "Edit"); });
    replace_text(focus_of(dialog), "C:\\windows\\win.ini");
    press_key(VK_RETURN);
    wait_for("the end of the dialog", [&] { return !IsWindow(dialog); });
    tool.expect_changes(false);
    tool.select(log_page);
    EXPECT_EQ(text_of(tool.page("Log file").controls[0]), "C:\\windows\\temp\\tavrin_agent.log");
}

TEST_F(BadMoment, KeysWorkBesideABox) {
    Tool tool;
    open(tool, action_page);
    const HWND execute = tool.page_button("Measure now", "Execute");
    click(execute);
    const HWND first = tool.box().window;
    bring_to_front(window);
    expect_focus(execute, "Execute");
    press_key(VK_RETURN);
    wait_for("a second box", [&] { return tool.box().window != first; });
    bring_to_front(window);
    expect_focus(execute, "Execute");
    press_key(VK_TAB);
    expect_focus(tool.control(test_connection), "Test Connection");
    press_key(VK_TAB);
    expect_focus(tool.control(close_id), "Close");
    press_key(VK_RETURN);
    EXPECT_EQ(tool.exit_code(), 0u);
}

/// A window of another program's, which comes and goes.
class OtherWindow {
public:
    OtherWindow()
        : window_(CreateWindowExA(0, "Static", "another program", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 450, 350,
                                  120, 80, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr)) {
        bring_to_front(window_);
    }
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;
    ~OtherWindow() {
        DestroyWindow(window_);
        MSG message{};
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
    }

private:
    HWND window_;
};

TEST_F(BadMoment, TheFocusIsBackAfterTheFrameMinimisedTheWindow) {
    Tool tool;
    open(tool, log_page);
    const std::pair<HWND, const char*> controls[] = {
        {tool.page("Log file").controls[0], "the path"},
        {tool.page_button("Log file", "..."), "the button"},
        {tool.control(tree_id), "the tree"},
    };
    for (const auto& [control, what] : controls) {
        tab_to(control);
        // What a click on the frame's button gives the order for.
        PostMessageA(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
        wait_for("the minimised window", [&] { return IsIconic(window) != FALSE; });
        { const OtherWindow other; }
        // Returns when the window is active again: a key pressed before would come on top of the next one.
        send(window, WM_SYSCOMMAND, SC_RESTORE);
        expect_focus(control, what);
    }
}

} // namespace
} // namespace e2e
