#include "e2e/fixture.h"

#include <ostream>

namespace e2e {
namespace {

const std::vector<TreePath> pages = {
    agent_name,
    {"Tavrin Agent", "Identity", "Data folder"},
    {"Tavrin Agent", "Identity", "Log file"},
    {"Tavrin Agent", "Servers", "Server list"},
    {"Tavrin Agent", "Servers", "Port"},
    {"Tavrin Agent", "Measuring", "Compress reports"},
    {"Tavrin Agent", "Measuring", "Detail"},
    {"Tavrin Agent", "Measuring", "Modem port"},
    {"Tavrin Agent", "Maintenance", "Measure now"},
    {"Tavrin Agent", "Maintenance", "Forget certificates"},
    {"Legacy Agent", "Retries"},
};
const TreePath choice_page = {"Tavrin Agent", "Measuring", "Detail"};

/// A control as other programs see it: its class, its text, and its place in the main window, in pixels.
struct Placed {
    std::string name;
    RECT place;

    friend bool operator==(const Placed& one, const Placed& other) {
        return one.name == other.name && EqualRect(&one.place, &other.place);
    }
    friend std::ostream& operator<<(std::ostream& out, const Placed& control) {
        return out << control.name << " at " << control.place.left << ", " << control.place.top << " to "
                   << control.place.right << ", " << control.place.bottom;
    }
};

void add_controls(std::vector<Placed>& found, HWND main_window, HWND parent) {
    for (HWND child : children_of(parent)) {
        RECT place;
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, main_window, reinterpret_cast<POINT*>(&place), 2);
        found.push_back({class_of(child) + " \"" + text_of(child) + "\"", place});
        add_controls(found, main_window, child);
    }
}

std::vector<Placed> controls_of_every_page(Tool& tool) {
    std::vector<Placed> found;
    for (const TreePath& path : pages) {
        tool.select(path);
        add_controls(found, tool.window(), tool.window());
    }
    return found;
}

/// Only version 6 lets a list box say how many choices it drops down.
LRESULT choices_dropped_down(Tool& tool) {
    tool.select(choice_page);
    return send(tool.page("Detail").controls[0], CB_GETMINVISIBLE);
}

int height_of(HWND window) {
    RECT place;
    GetWindowRect(window, &place);
    return place.bottom - place.top;
}

HWND opened_list(DWORD process) {
    for (HWND each : windows_of(process))
        if (is_class(each, "ComboLBox"))
            return each;
    return nullptr;
}

/// How high a list box of forty choices stands on the screen when it is opened, its closed part included.
int height_of_forty_choices(const std::string& program) {
    std::string lines = "SOFTWARE\\Tavrin\\Agent\nAgent\n!All\n$Detail\nDetail\nHow much.\nOptions\n";
    for (int choice = 0; choice < 40; ++choice)
        lines += "choice " + std::to_string(choice) + "\n";
    use_spec_file("Agent", lines);
    Tool tool(program);
    tool.select({"Agent", "All", "Detail"});
    const HWND box = tool.page("Detail").controls[0];
    DWORD process = 0;
    GetWindowThreadProcessId(box, &process);
    bring_to_front(tool.window());
    send(box, CB_SHOWDROPDOWN, TRUE);
    wait_for("the opened list", [&] { return opened_list(process) != nullptr; });
    return height_of(box) + height_of(opened_list(process));
}

class Controls : public Sample {
protected:
    /// The program, and its copy that does not ask for version 6 of the common controls.
    static std::string with_version_6() { return "\"" + program_folder() + "\\tavrinconfig.exe\""; }
    static std::string without_version_6() { return "\"" + environment("TAVRIN_WITHOUT_VERSION_6") + "\""; }
};

TEST_F(Controls, AreOfVersion6AsTheManifestSays) {
    Tool newer(with_version_6());
    EXPECT_GT(choices_dropped_down(newer), 0);
    Tool older(without_version_6());
    EXPECT_EQ(choices_dropped_down(older), 0);
}

/// 140 pixels, less the part of an incomplete row.
TEST_F(Controls, OpenTheirListsEquallyFarInBothVersions) {
    const int newer = height_of_forty_choices(with_version_6());
    EXPECT_LE(newer, 140);
    EXPECT_GT(newer, 120);
    EXPECT_EQ(height_of_forty_choices(without_version_6()), newer);
}

TEST_F(Controls, StandInTheSamePlacesInBothVersions) {
    Tool newer(with_version_6());
    const std::vector<Placed> placed = controls_of_every_page(newer);
    Tool older(without_version_6());
    EXPECT_EQ(controls_of_every_page(older), placed);
    EXPECT_GT(placed.size(), 6 * pages.size());
}

} // namespace
} // namespace e2e
