#include "e2e/fixture.h"

#include <algorithm>

namespace e2e {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The program's file, opened for its resources.
class ProgramFile {
public:
    ProgramFile()
        : module(LoadLibraryExA((program_folder() + "\\tavrinconfig.exe").c_str(), nullptr,
                                LOAD_LIBRARY_AS_DATAFILE)) {}
    ~ProgramFile() { FreeLibrary(module); }
    ProgramFile(const ProgramFile&) = delete;
    ProgramFile& operator=(const ProgramFile&) = delete;

    HICON icon(const char* name) const { return LoadIconA(module, name); }
    HICON small_icon() const {
        return static_cast<HICON>(LoadImageA(module, "tavrin", IMAGE_ICON, small, small, LR_DEFAULTCOLOR));
    }

    static constexpr int small = 16;

private:
    HMODULE module;
};

int width_of(HICON icon) {
    ICONINFO parts;
    BITMAP picture = {};
    if (GetIconInfo(icon, &parts)) {
        GetObjectA(parts.hbmColor, sizeof picture, &picture);
        DeleteObject(parts.hbmColor);
        DeleteObject(parts.hbmMask);
    }
    return picture.bmWidth;
}

struct Dot {
    int x;
    int y;
    COLORREF colour;
};
using Picture = std::vector<Dot>;

/// What a small icon shows on a ground of one colour.
Picture drawn_on(HICON icon, int ground) {
    constexpr int size = ProgramFile::small;
    const HDC screen = GetDC(nullptr);
    const HDC context = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
    const HGDIOBJ before = SelectObject(context, bitmap);
    const RECT all = {0, 0, size, size};
    FillRect(context, &all, static_cast<HBRUSH>(GetStockObject(ground)));
    DrawIconEx(context, 0, 0, icon, size, size, 0, nullptr, DI_NORMAL);
    Picture picture;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            picture.push_back({x, y, GetPixel(context, x, y)});
    SelectObject(context, before);
    DeleteObject(bitmap);
    DeleteDC(context);
    ReleaseDC(nullptr, screen);
    return picture;
}

/// The dots through which nothing of the ground is seen.
Picture opaque_dots(HICON icon) {
    const Picture on_black = drawn_on(icon, BLACK_BRUSH);
    const Picture on_white = drawn_on(icon, WHITE_BRUSH);
    Picture opaque;
    for (std::size_t i = 0; i < on_black.size(); ++i)
        if (on_black[i].colour == on_white[i].colour)
            opaque.push_back(on_black[i]);
    return opaque;
}

/// Whether the picture stands, dot for dot, where a window's caption begins.
bool caption_begins_with(HWND window, const Picture& picture) {
    RECT place;
    GetWindowRect(window, &place);
    const HDC screen = GetDC(nullptr);
    const auto stands_at = [&](int left, int top) {
        return std::all_of(picture.begin(), picture.end(), [&](const Dot& dot) {
            return GetPixel(screen, left + dot.x, top + dot.y) == dot.colour;
        });
    };
    bool found = false;
    for (int x = 0; x < 12 && !found; ++x)
        for (int y = 0; y < 12 && !found; ++y)
            found = stands_at(place.left + x, place.top + y);
    ReleaseDC(nullptr, screen);
    return found;
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
                            "    Measure now", "    Forget certificates", "Tray Icon", "  Tray icon",
                            "    Show icon", "    Language", "    Colour when all is well"));
}

TEST_F(Startup, FindsItsIconInItsFile) {
    const ProgramFile program;
    EXPECT_EQ(width_of(program.icon("tavrin")), 32);
    EXPECT_EQ(width_of(program.small_icon()), 16);
    EXPECT_EQ(program.icon("no such icon"), nullptr);
}

/// And not the large icon's picture, made small.
TEST_F(Startup, ShowsTheSmallIconsOwnPictureInTheCaption) {
    Tool tool;
    const Picture picture = opaque_dots(ProgramFile().small_icon());
    ASSERT_GT(picture.size(), 100u);
    bring_to_front(tool.window());
    wait_for("the small icon in the caption", [&] { return caption_begins_with(tool.window(), picture); });
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
