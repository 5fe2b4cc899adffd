#include "e2e/fixture.h"

namespace e2e {
namespace {

/// The program by real keys alone; where the focus is is read from outside.
class Keyboard : public Sample {
protected:
    void start(Tool& tool) {
        window = tool.window();
        bring_to_front(window);
        press_key(VK_TAB);
        expect_focus(tool.control(tree_id), "the tree");
    }

    void expect_focus(HWND control, const std::string& what) {
        wait_for("the focus on " + what, [&] { return focus_of(window) == control; });
    }

    void tab_to(HWND control, const std::string& what) {
        press_key(VK_TAB);
        expect_focus(control, what);
    }

    void tab_back_to(HWND control, const std::string& what) {
        press_key(VK_TAB, true);
        expect_focus(control, what);
    }

    /// Walks the tree with the arrow keys from its first item to the item of a path.
    void walk_to(Tool& tool, const TreePath& path) {
        expect_focus(tool.control(tree_id), "the tree");
        const RemoteTree tree = tool.tree();
        const std::string first = tree.texts().front();
        press_key(VK_HOME);
        wait_for("the first item", [&] { return tree.selected() == first; });
        for (std::size_t level = 0; level < path.size(); ++level) {
            if (level > 0) {
                press_key(VK_RIGHT); // unfolds the item
                go_down(tree);
            }
            while (tree.selected() != path[level])
                go_down(tree);
        }
        tool.page(path.back());
    }

    HWND window = nullptr;

private:
    /// Presses Down and waits until the tree has followed; at the tree's end that fails.
    static void go_down(const RemoteTree& tree) {
        const std::string before = tree.selected();
        press_key(VK_DOWN);
        wait_for("the item below " + before, [&] { return tree.selected() != before; });
    }
};

TEST_F(Keyboard, TheWholeJob) {
    install_agent("--stop-seconds 1");
    start_agent();
    Tool tool;
    start(tool);
    walk_to(tool, agent_name);
    const HWND edit = tool.page("Agent name").controls[0];
    tab_to(edit, "the name");
    press_key(VK_HOME);
    press_key(VK_END, true);
    type("Web server 2, \"new\"");
    wait_for("the typed name", [&] { return text_of(edit) == "Web server 2, \"new\""; });
    tool.expect_changes(true);

    tab_back_to(tool.control(tree_id), "the tree");
    walk_to(tool, {"Tavrin Agent", "Measuring", "Detail"});
    tab_to(tool.page("Detail").controls[0], "the choices");
    press_key(VK_DOWN);

    tab_to(tool.control(test_connection), "Test Connection");
    tab_to(tool.control(ok_id), "OK");
    press_key(VK_SPACE);
    const Box question = tool.box();
    EXPECT_EQ(question.caption, "Restart Tavrin Agent Service?");
    press_key(VK_SPACE);
    EXPECT_EQ(tool.exit_code(), 0u);
    EXPECT_EQ(read_value(agent_key, "AgentName"), "Web server 2, \"new\"");
    EXPECT_EQ(read_value(agent_key, "Detail"), "everything");
    expect_agent(SERVICE_RUNNING);
    EXPECT_THAT(agent_notes(), testing::HasSubstr("setting AgentName=Web server 2, \"new\""));
}

} // namespace
} // namespace e2e
