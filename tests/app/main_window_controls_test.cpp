#include "app/main_window_controls.h"

#include <gmock/gmock.h>
#include <ostream>
#include <string>

static void PrintTo(const Placement& at, std::ostream* out) {
    *out << at.x << ',' << at.y << ' ' << at.width << 'x' << at.height;
}

namespace {

TEST(WindowLayout, PlacesTreeAndButtonsFromTheClientRectangle) {
    const RECT client{0, 0, 801, 600};
    EXPECT_EQ(tree_placement(client), (Placement{10, 10, 380, 550}));
    EXPECT_EQ(ok_placement(client), (Placement{631, 570, 80, 25}));
    EXPECT_EQ(close_placement(client), (Placement{716, 570, 80, 25}));
    EXPECT_EQ(test_connection_placement(client), (Placement{5, 570, 120, 25}));
}

TEST(WindowLayout, ATinyClientRectangleGivesNegativeSizes) {
    const RECT client{0, 0, 1, 2};
    EXPECT_EQ(tree_placement(client), (Placement{10, 10, -20, -48}));
    EXPECT_EQ(ok_placement(client), (Placement{-169, -28, 80, 25}));
}

struct Drag {
    const char* name;
    WPARAM edge;
    RECT expected;
};

/// 200 by 100: 236 too narrow, 129 too low.
constexpr RECT too_small{100, 100, 300, 200};

class TooSmallDrag : public testing::TestWithParam<Drag> {};

TEST_P(TooSmallDrag, MovesTheDraggedEdgeBack) {
    RECT proposed = too_small;
    keep_minimum_size(GetParam().edge, proposed);
    EXPECT_EQ(proposed.left, GetParam().expected.left);
    EXPECT_EQ(proposed.top, GetParam().expected.top);
    EXPECT_EQ(proposed.right, GetParam().expected.right);
    EXPECT_EQ(proposed.bottom, GetParam().expected.bottom);
}

INSTANTIATE_TEST_SUITE_P(Edges, TooSmallDrag,
                         testing::Values(Drag{"Left", WMSZ_LEFT, {-136, 100, 300, 200}},
                                         Drag{"Right", WMSZ_RIGHT, {100, 100, 536, 200}},
                                         Drag{"Top", WMSZ_TOP, {100, -29, 300, 200}},
                                         Drag{"Bottom", WMSZ_BOTTOM, {100, 100, 300, 329}},
                                         Drag{"TopLeft", WMSZ_TOPLEFT, {-136, -29, 300, 200}},
                                         Drag{"TopRight", WMSZ_TOPRIGHT, {100, -29, 536, 200}},
                                         Drag{"BottomLeft", WMSZ_BOTTOMLEFT, {-136, 100, 300, 329}},
                                         Drag{"BottomRight", WMSZ_BOTTOMRIGHT, {100, 100, 536, 329}}),
                         [](const auto& at) { return std::string(at.param.name); });

TEST(WindowLayout, ALargeEnoughWindowIsLeftAsItIs) {
    RECT proposed{0, 0, 436, 229};
    keep_minimum_size(WMSZ_TOPLEFT, proposed);
    EXPECT_EQ(proposed.left, 0);
    EXPECT_EQ(proposed.top, 0);
    EXPECT_EQ(proposed.right, 436);
    EXPECT_EQ(proposed.bottom, 229);
}

} // namespace
