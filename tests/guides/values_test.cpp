// What the guides say about opening a page: the tables with the columns page, stored, shown and OK writes.
#include "guides/guide.h"
#include "pages/building.h"
#include "pages/configuration.h"
#include "support/boxes.h"
#include "support/page.h"
#include "support/registry.h"

#include <array>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <sstream>

namespace {

constexpr char looked_at_key[] = "SOFTWARE\\Example\\LookedAt";

using Cells = std::vector<std::string>;

Cells cells_of(const std::string& line) {
    Cells cells;
    std::istringstream row(line.substr(1));
    for (std::string cell; std::getline(row, cell, '|');) {
        const auto first = cell.find_first_not_of(' ');
        cells.push_back(
            first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return cells;
}

/// The rows of every such table of a guide.
std::vector<Cells> rows_of(const std::string& name) {
    std::ifstream guide(TAVRIN_GUIDES "/" + name);
    std::vector<Cells> rows;
    bool inside = false;
    for (std::string line; std::getline(guide, line);) {
        inside = line == "| page | stored | shown | OK writes |" || (inside && line.starts_with("|"));
        if (inside && line.find("---") == std::string::npos && !line.starts_with("| page "))
            rows.push_back(cells_of(line));
    }
    return rows;
}

std::string unquoted(const std::string& cell) {
    EXPECT_TRUE(cell.size() > 1 && cell.starts_with('`') && cell.ends_with('`')) << cell;
    return cell.substr(1, cell.size() - 2);
}

void store(const std::string& cell) {
    const std::string number = "`REG_DWORD` ";
    set_text(looked_at_key, "Value", "");
    delete_value(looked_at_key, "Value");
    if (cell.starts_with(number)) {
        const auto value = static_cast<std::uint32_t>(std::stoul(cell.substr(number.size())));
        set_value(looked_at_key, "Value", REG_DWORD, {reinterpret_cast<const char*>(&value), sizeof value});
    } else if (cell != "no value") {
        set_text(looked_at_key, "Value", unquoted(cell));
    }
}

std::string shown_in(HWND control) {
    if ((style_of(control) & BS_AUTOCHECKBOX) == BS_AUTOCHECKBOX && class_of(control) == "Button")
        return SendMessageA(control, BM_GETCHECK, 0, 0) == BST_CHECKED ? "ticked" : "not ticked";
    std::array<char, 64> text{};
    GetWindowTextA(control, text.data(), static_cast<int>(text.size()));
    return text[0] == '\0' ? "an empty box" : "`" + std::string(text.data()) + "`";
}

class ValuesInGuides : public CleanSystem {
protected:
    ValuesInGuides() { make_key(looked_at_key); }

    /// A configuration with one entry of the type.
    void describe(const std::string& type) {
        configuration.groups.clear();
        build_settings(configuration, "",
                       std::string(looked_at_key) + "\nExample\n!All\n$Value\nValue\nHelp.\n" + type,
                       show_spec_error);
    }
    BaseEntry& entry() { return *configuration.groups.at(0).entries.at(0); }

    /// What is stored after OK, with the page opened or not.
    std::string written() {
        if (!entry().changed())
            return "nothing";
        entry().write();
        const std::string text = text_value(looked_at_key, "Value");
        return text.empty() ? "an empty text" : "`" + text + "`";
    }

    Configuration configuration{false};
    StandInMainWindow main{436, 229};
};

TEST_F(ValuesInGuides, OpeningAPageDoesWhatTheTablesSay) {
    const std::map<std::string, std::string> types = {{"yes or no", "Boolean"}, {"number", "Integer"}};
    for (const char* const guide : {"administrator.md", "spec-files.md"}) {
        const auto rows = rows_of(guide);
        EXPECT_GT(rows.size(), 5U) << guide;
        for (const Cells& row : rows) {
            SCOPED_TRACE(std::string(guide) + ": " + row.at(0) + ", " + row.at(1));
            store(row.at(1));
            describe(types.contains(row.at(0)) ? types.at(row.at(0)) : unquoted(row.at(0)));
            EXPECT_EQ(written(), "nothing") << "without a page";
            entry().select(main.window());
            EXPECT_EQ(shown_in(main.controls().at(1)), row.at(2));
            entry().deselect(main.window());
            EXPECT_EQ(written(), row.at(3));
        }
    }
}

TEST_F(ValuesInGuides, OpeningOtherPagesChangesNothing) {
    for (const char* const type :
         {"String", "Directory", "File\nlog", "ServerList", "COM", "Options\none\ntwo"}) {
        for (const auto& [kind, bytes] :
             {std::pair<DWORD, std::string>{REG_DWORD, std::string("\x88\x13\0\0", 4)},
              {REG_EXPAND_SZ, std::string("%NAME%\0", 7)},
              {REG_SZ, std::string("three\0", 6)},
              {REG_SZ, std::string(1024, 'a') + std::string(1, '\0')}}) {
            set_value(looked_at_key, "Value", kind, bytes);
            describe(type);
            entry().select(main.window());
            entry().deselect(main.window());
            EXPECT_FALSE(entry().changed()) << type << ", " << kind;
        }
    }
}

TEST_F(ValuesInGuides, AnEditedValueBecomesAText) {
    set_value(looked_at_key, "Value", REG_EXPAND_SZ, std::string("%NAME%\\a\0", 9));
    describe("String");
    entry().select(main.window());
    EXPECT_EQ(shown_in(main.controls().at(1)), "`%NAME%\\a`");
    SetWindowTextA(main.controls().at(1), "%NAME%\\b");
    entry().deselect(main.window());
    EXPECT_EQ(written(), "`%NAME%\\b`");
}

TEST_F(ValuesInGuides, AnEmptyValueNameIsTheKeysDefaultValue) {
    set_text(looked_at_key, "", "default");
    build_settings(configuration, "", std::string(looked_at_key) + "\nExample\n!All\n$Value\n\nHelp.\nString",
                   show_spec_error);
    entry().select(main.window());
    EXPECT_EQ(shown_in(main.controls().at(1)), "`default`");
    entry().deselect(main.window());
}

TEST_F(ValuesInGuides, AByteOrderMarkBelongsToTheKey) {
    try {
        build_settings(configuration, "",
                       "\xEF\xBB\xBF" + std::string(looked_at_key) + "\nExample\n!All\n$A\nA\nHelp.\nString",
                       show_spec_error);
        FAIL() << "the key was found";
    } catch (const std::string& text) {
        EXPECT_EQ(text, "Cannot open path \"\xEF\xBB\xBF" + std::string(looked_at_key) + "\" for reading");
    }
}

} // namespace
