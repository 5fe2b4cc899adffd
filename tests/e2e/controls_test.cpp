#include "e2e/fixture.h"

#include <ostream>

namespace e2e {
namespace {

const std::vector<TreePath> kPages = {
    kAgentName,
    {"Tavrin Agent", "Identity", "Data folder"},
    {"Tavrin Agent", "Identity", "Log file"},
    {"Tavrin Agent", "Servers", "Server list"},
    {"Tavrin Agent", "Servers", "Port"},
    {"Tavrin Agent", "Measuring", "Compress reports"},
    {"Tavrin Agent", "Measuring", "Detail"},
    {"Tavrin Agent", "Measuring", "Modem port"},
    {"Tavrin Agent", "Maintenance", "Measure now"},
    {"Tavrin Agent", "Maintenance", "Forget the servers' certificates"},
    {"Legacy Agent", "Retries"},
};
const TreePath kChoice = {"Tavrin Agent", "Measuring", "Detail"};

/// A control as others see it: its class and text, and where it stands in the main window, in pixels.
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
    for (const TreePath& path : kPages) {
        tool.select(path);
        add_controls(found, tool.window(), tool.window());
    }
    return found;
}

/// Only version 6 lets a list box say how many choices it drops down at least, 30 at first.
LRESULT choices_dropped_down(Tool& tool) {
    tool.select(kChoice);
    return send(tool.page("Detail").controls[0], CB_GETMINVISIBLE);
}

class Controls : public Sample {
protected:
    /// The program, and its copy that does not ask for version 6 of the common controls.
    static std::string with_version_6() { return "\"" + program_folder() + "\\tavrinconfig.exe\""; }
    static std::string without_version_6() { return "\"" + environment("TAVRIN_WITHOUT_VERSION_6") + "\""; }
};

TEST_F(Controls, AreOfVersion6AsTheManifestSays) {
    Tool newer(with_version_6());
    EXPECT_EQ(choices_dropped_down(newer), 30);
    Tool older(without_version_6());
    EXPECT_EQ(choices_dropped_down(older), 0);
}

TEST_F(Controls, StandInTheSamePlacesInBothVersions) {
    Tool newer(with_version_6());
    const std::vector<Placed> placed = controls_of_every_page(newer);
    Tool older(without_version_6());
    EXPECT_EQ(controls_of_every_page(older), placed);
    EXPECT_GT(placed.size(), 6 * kPages.size());
}

} // namespace
} // namespace e2e
