// docs/spec-files.md: every example is parsed and shown, and leads to what the guide says.
//
//   spec      a whole file
//   stored    the values that are stored for the file above, as name=text
//   tree      what the tool shows of the file above
//   message   the texts that it shows of the file above, one a line; whatever throws them
//   subspec   one entry of the type that the heading names
//   nsis      wxs      for installers; test_installer_snippets.py compiles them
#include "guides/guide.h"
#include "pages/building.h"
#include "pages/configuration.h"
#include "support/boxes.h"
#include "support/kinds.h"
#include "support/page.h"
#include "support/registry.h"
#include "support/thrown.h"

#include <array>
#include <gmock/gmock.h>
#include <map>

namespace {

using testing::AnyOf;

/// What thrown_text gives when nothing was thrown.
constexpr char nothing[] = "nothing thrown";
constexpr char agent_key[] = "SOFTWARE\\Example\\Agent";
constexpr char legacy_key[] = "SOFTWARE\\Example\\Legacy";

std::string text_in(HWND control) {
    std::array<char, 256> text{};
    GetWindowTextA(control, text.data(), static_cast<int>(text.size()));
    return text.data();
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string options_of(HWND list) {
    std::string options;
    const auto count = static_cast<WPARAM>(SendMessageA(list, CB_GETCOUNT, 0, 0));
    for (WPARAM i = 0; i < count; ++i) {
        std::array<char, 256> text{};
        SendMessageA(list, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        options += (i == 0 ? " of " : ", ") + quoted(text.data());
    }
    return options;
}

std::string described(HWND control) {
    const std::string kind = class_of(control);
    if (kind == "Edit")
        return (style_of(control) & ES_NUMBER) != 0 ? "number box" : "text box";
    if (kind == "ComboBox")
        return "list" + options_of(control);
    const bool checkbox = (style_of(control) & BS_AUTOCHECKBOX) == BS_AUTOCHECKBOX;
    return (checkbox ? "check box " : "button ") + quoted(text_in(control));
}

struct Outcome {
    std::string messages;
    std::string tree;
};

class SpecFilesGuide : public CleanSystem {
protected:
    SpecFilesGuide() {
        make_key(agent_key);
        make_key(legacy_key);
    }

    /// The controls of an entry's page, but for the help text.
    std::string page_of(BaseEntry& entry) {
        entry.select(main.window());
        const auto controls = main.controls();
        std::string page;
        for (std::size_t i = 1; i < controls.size(); ++i)
            page += (i == 1 ? "" : ", ") + described(controls[i]);
        entry.deselect(main.window());
        return page;
    }

    std::string tree_of(const Configuration& configuration) {
        std::string tree = configuration.name;
        if (!configuration.serviceName.empty())
            tree += ", service " + configuration.serviceName;
        tree += "\n";
        for (const Group& group : configuration.groups) {
            const std::string indent = group.name.empty() ? "    " : "        ";
            if (!group.name.empty())
                tree += "    " + group.name + "\n";
            for (const OwnedEntry& entry : group.entries)
                tree += indent + std::string(entry->title()) + ": " + page_of(*entry) + "\n";
        }
        return tree;
    }

    /// What the tool shows of the file when it starts, and when "Scan" is pressed, if it has such a button.
    Outcome outcome_of(const std::string& file) {
        Outcome outcome;
        Configuration configuration(false);
        const Boxes boxes;
        std::string thrown =
            thrown_text([&] { build_settings(configuration, "Legacy", file, show_spec_error); });
        if (thrown == nothing) {
            outcome.tree = tree_of(configuration);
            if (outcome.tree.find("\"Scan\"") != std::string::npos)
                thrown = thrown_text([&] { configuration.integer_by_title("Port"); });
        }
        for (const SeenBox& box : boxes.seen())
            outcome.messages += box.text + "\n";
        if (thrown != nothing)
            outcome.messages += thrown + "\n";
        return outcome;
    }

    StandInMainWindow main{436, 229};
};

/// One example: a file and what the guide says about it.
struct Example {
    std::string file;
    std::map<std::string, std::string> blocks;
    int line = 0;

    std::string block(const std::string& label) const {
        return blocks.contains(label) ? blocks.at(label) : std::string();
    }
};

std::vector<Example> examples() {
    std::vector<Example> found;
    for (const Fence& fence : fences_of("spec-files.md")) {
        if (fence.label == "spec") {
            found.push_back({fence.text, {}, fence.line});
        } else if (!found.empty()) {
            found.back().blocks[fence.label] += fence.text;
        }
    }
    return found;
}

void store_values(const std::string& stored) {
    for (const std::string& line : lines_of(stored)) {
        const auto sign = line.find('=');
        set_text(agent_key, line.substr(0, sign), line.substr(sign + 1));
    }
}

TEST_F(SpecFilesGuide, EveryFileLeadsToWhatTheGuideSays) {
    const auto all = examples();
    EXPECT_FALSE(all.empty());
    for (const Example& example : all) {
        store_values(example.block("stored"));
        const Outcome outcome = outcome_of(example.file);
        EXPECT_EQ(outcome.messages, example.block("message")) << "line " << example.line;
        EXPECT_EQ(outcome.tree, example.block("tree")) << "line " << example.line;
    }
}

TEST_F(SpecFilesGuide, HasNoBlockThatNoTestReads) {
    for (const Fence& fence : fences_of("spec-files.md")) {
        EXPECT_THAT(fence.label,
                    AnyOf("spec", "stored", "tree", "message", "subspec", "bat", "sh", "nsis", "wxs", "yaml"))
            << "line " << fence.line;
    }
}

std::string expected(const TestedControl& control, const PageKind& kind) {
    if (control.window_class == std::string("Edit"))
        return (control.style & ES_NUMBER) != 0 ? "number box" : "text box";
    if (control.window_class == std::string("ComboBox"))
        return kind.lists_ports ? R"(list of "COM1", "COM2")" : R"(list of "errors", "normal", "everything")";
    return ((control.style & BS_AUTOCHECKBOX) != 0 ? "check box " : "button ") + quoted(control.text);
}

std::string expected_page(const PageKind& kind) {
    std::string page;
    for (const TestedControl& control : kind.controls)
        page += (page.empty() ? "" : ", ") + expected(control, kind);
    return page;
}

TEST_F(SpecFilesGuide, EveryTypeHasTheEntryThatTheGuideShows) {
    std::map<std::string, std::string> pages{{"`ConnectionTest`", ""}};
    for (const PageKind& kind : page_kinds) {
        pages["`" + std::string(kind.type == std::string("string") ? "String" : kind.type) + "`"] =
            expected_page(kind);
    }
    make_key("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    set_text("HARDWARE\\DEVICEMAP\\SERIALCOMM", "\\Device\\Serial0", "COM2");
    set_text("HARDWARE\\DEVICEMAP\\SERIALCOMM", "\\Device\\Serial1", "COM1");
    const Boxes no_box;
    std::map<std::string, std::string> shown;
    for (const Fence& fence : fences_of("spec-files.md")) {
        if (fence.label != "subspec")
            continue;
        Configuration configuration(false);
        build_settings(configuration, "", std::string(agent_key) + "\nExample\n!All\n" + fence.text,
                       show_spec_error);
        const auto& entries = configuration.groups.at(0).entries;
        EXPECT_EQ(configuration.offersConnectionTest, entries.empty()) << fence.heading;
        EXPECT_EQ(configuration.groups.size(), 1U) << fence.heading;
        shown[fence.heading] = entries.empty() ? "" : page_of(*entries.at(0));
        const std::string type = lines_of(fence.text).at(3);
        EXPECT_EQ(fence.heading, "`" + (type == "string" ? "String" : type) + "`");
    }
    EXPECT_EQ(shown, pages);
    EXPECT_TRUE(no_box.seen().empty());
}

} // namespace
