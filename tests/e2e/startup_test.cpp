#include "e2e/fixture.h"

namespace e2e {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Whether a colour is seen where a window's caption begins.
bool caption_begins_with(HWND window, COLORREF colour) {
    RECT place;
    GetWindowRect(window, &place);
    const HDC screen = GetDC(nullptr);
    int seen = 0;
    for (int x = 0; x < GetSystemMetrics(SM_CXSMICON) + 8; ++x)
        for (int y = 0; y < GetSystemMetrics(SM_CYCAPTION) + 8; ++y)
            seen += GetPixel(screen, place.left + x, place.top + y) == colour;
    ReleaseDC(nullptr, screen);
    return seen > 0;
}

class Startup : public Sample {};

TEST_F(Startup, ShowsTheSampleInTheTree) {
    Tool tool;
    EXPECT_EQ(text_of(tool.window()), "Tavrin Configuration");
    EXPECT_THAT(tool.tree().texts(),
                ElementsAre("Legacy Agent", "  Retries", "  Pause", "  Proxy", "  Limits", "    Memory",
                            "    Disk", "  Start", "    Start delay", "    Quiet start", "Legacy Archive",
                            "  Keep days", "  Archive folder", "Tavrin Agent", "  Identity", "    Agent name",
                            "    Agent domain", "    Data folder", "    Log file", "  Servers",
                            "    Server list", "    Port", "  Measuring", "    Interval",
                            "    Compress reports", "    Detail", "    Modem port", "  Maintenance",
                            "    Measure now", "    Forget the servers' certificates", "Tray Icon",
                            "  Tray icon", "    Show icon", "    Language", "    Colour when all is well"));
}

TEST_F(Startup, FindsItsIconInItsFile) {
    const HMODULE program =
        LoadLibraryExA((program_folder() + "\\tavrinconfig.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(program, nullptr);
    EXPECT_NE(LoadIconA(program, "tavrin"), nullptr);
    EXPECT_EQ(LoadIconA(program, "no such icon"), nullptr);
    FreeLibrary(program);
}

TEST_F(Startup, ShowsItsIconInTheCaption) {
    Tool tool;
    const COLORREF background = RGB(0x1f, 0x4e, 0x79);
    bring_to_front(tool.window());
    wait_for("the icon in the caption", [&] { return caption_begins_with(tool.window(), background); });
}

TEST_F(Startup, MissingKeyEndsTheProgram) {
    delete_key(kListKey);
    Tool tool;
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Error!");
    EXPECT_EQ(box.text, "Cannot read out SOFTWARE\\Tavrin\\TRConfig");
    EXPECT_FALSE(tool.has_window());
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 1u);
}

TEST_F(Startup, KeyWithoutPathsShowsAnEmptyTree) {
    for (const char* name : {"Agent", "Appearance", "Legacy Agent", "Legacy Archive"})
        delete_value(kListKey, name);
    write_value(kListKey, "Nothing", "");
    write_value(kListKey, "Missing", "C:\\no such folder\\no.spec");
    Tool tool;
    EXPECT_THAT(tool.tree().texts(), IsEmpty());
    tool.press(kClose);
    EXPECT_EQ(tool.exit_code(), 0u);
}

TEST_F(Startup, SecondConfigurationOfTheSameNameIsNotShown) {
    use_spec_file("First", "SOFTWARE\\Tavrin\\Agent\nAgent\n!One\n$Port\nPort\nThe port.\nInteger\n");
    const std::string first = read_value(kListKey, "First");
    use_spec_file("Second", "SOFTWARE\\Tavrin\\Agent\nAgent\n!Two\n$Port\nPort\nThe port.\nInteger\n");
    write_value(kListKey, "First", first);
    Tool tool;
    EXPECT_THAT(tool.tree().texts(), ElementsAre("Agent", "  One", "    Port"));
}

TEST_F(Startup, ParseErrorEndsTheProgram) {
    use_spec_file("Broken", "SOFTWARE\\Tavrin\\Agent\nBroken\nTavrinAgent\nanother line\n");
    Tool tool;
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Error!");
    EXPECT_EQ(box.text, "Parse error: line \"another line\" not group start");
    box.press(IDOK);
    EXPECT_EQ(tool.exit_code(), 1u);
}

TEST_F(Startup, UnknownTypeIsReportedAndTheRestShown) {
    use_spec_file("Newer", "SOFTWARE\\Tavrin\\Agent\nNewer\n!All\n$Colour\nColour\nA colour.\nPalette\n"
                           "$Port\nPort\nThe port.\nInteger\n");
    Tool tool;
    const Box box = tool.box();
    EXPECT_EQ(box.caption, "Error");
    EXPECT_EQ(box.text, "Unknown type: \"Palette\", for subspec Colour");
    box.press(IDOK);
    EXPECT_THAT(tool.tree().texts(), ElementsAre("Newer", "  All", "    Port"));
}

TEST_F(Startup, CloseBoxOfTheFrameEndsWithZero) {
    Tool tool;
    PostMessageA(tool.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(tool.exit_code(), 0u);
}

SIZE size_of(HWND window) {
    RECT area = {};
    GetWindowRect(window, &area);
    return {area.right - area.left, area.bottom - area.top};
}

TEST_F(Startup, WindowStartsAtItsSmallestSizeAndCannotBeDraggedSmaller) {
    Tool tool;
    const HWND window = tool.window();
    bring_to_front(window);
    EXPECT_EQ(size_of(window).cx, 436);
    EXPECT_EQ(size_of(window).cy, 229);
    RECT area = {};
    GetWindowRect(window, &area);
    drag_corner(window, {area.right + 60, area.bottom + 40});
    wait_for("a larger window", [&] { return size_of(window).cx > 436 && size_of(window).cy > 229; });
    GetWindowRect(window, &area);
    drag_corner(window, {area.left + 100, area.top + 100});
    wait_for("a window of the smallest size",
             [&] { return size_of(window).cx == 436 && size_of(window).cy == 229; });
}

} // namespace
} // namespace e2e
