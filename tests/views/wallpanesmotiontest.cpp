#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "views/parts/detailarea.h"
#include "views/wallthreeviewmotion.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {
namespace {

// Origin at the bottom left corner.
std::string text(const PaneRect& rect) {
    std::ostringstream out;
    out << rect.x << ' ' << rect.y << ' ' << rect.width << ' ' << rect.height;
    return out.str();
}

TEST(WallPanes, divideTheSurface) {
    const struct {
        int width, height;
        const char *overview, *detail, *left, *right, *panorama;
        float aspect;
    } cases[] = {
        {1920, 1080, "12 66 948 948", "960 66 948 948", "0 541 959 539", "961 541 959 539", "0 0 1920 539", 1},
        {2400, 1000, "226 13 974 974", "1200 13 974 974", "0 501 1199 499", "1201 501 1199 499", "0 0 2400 499", 2},
        {500, 900, "3 326 247 247", "250 326 247 247", "0 451 249 449", "251 451 249 449", "0 0 500 449", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.width);
        DetailArea two;
        two.layoutPanes(c.width, c.height);
        EXPECT_EQ(text(two._paneRects[DetailArea::mapPane]), c.overview);
        EXPECT_EQ(text(two._paneRects[DetailArea::detailPane]), c.detail);
        WallThreeViewMotion three;
        three._size.changeTo(c.width, c.height);
        three.layoutPanes();
        EXPECT_EQ(text(three._paneRects[0]), c.left);
        EXPECT_EQ(text(three._paneRects[2]), c.right);
        EXPECT_EQ(text(three._paneRects[WallThreeViewMotion::panorama]), c.panorama);
        EXPECT_EQ(three._aspect, c.aspect);
    }
}

TEST(WallThreeViewMotion, comesNearAfterTheFirstFrame) {
    WallThreeViewMotion motion;
    MatrixState matrices;
    for (const double shift : {0.0, 1.0486, 1.0486}) {
        motion.updatePaneCamera(0, matrices);
        EXPECT_NEAR(motion._paneMoveZ, shift, 1e-6);
    }
}

// 1200 by 900: the overview answers up to x = 600, its middle is (300, 450).
struct WallTwoViewMotionTest : testing::Test {
    WallTwoViewMotionTest() { motion._size.changeTo(1200, 900); }
    void stand(float pitch, float yaw) {
        motion._pitch = pitch;
        motion._yaw = yaw;
    }
    // A few dozen steps are each rounded to float.
    void expectAt(double pitch, double yaw, const std::string& what) {
        EXPECT_NEAR(motion._pitch, pitch, 1e-3) << what;
        EXPECT_NEAR(motion._yaw, yaw, 1e-3) << what;
    }

    WallTwoViewMotion motion;
    MatrixState matrices;
};

TEST_F(WallTwoViewMotionTest, dragsTurnWithinADiamond) {
    motion.fling(1000, 1000);
    expectAt(0, 0, "flung before any drag");
    const struct {
        const char* what;
        float pitch, yaw, x1, y1, x2, y2;
        double endPitch, endYaw;
    } cases[] = {
        {"on the overview", 0, 0, 100, 100, 120, 140, 1.2, 0.6},
        {"from the detail into the overview", 0, 0, 620, 100, 599, 140, 1.2, -0.63},
        {"on the line between the halves", 0, 0, 620, 100, 600, 140, -1.2, 0.6},
        {"on the detail", 0, 0, 1000, 500, 1020, 460, 1.2, -0.6},
        {"in proportion", 0, 0, 1000, 500, 1480, 380, 2.52, -10.08},
        {"pitch gives way", 30, 20, 100, 100, 140, 100, 29.2, 21.2},
        {"yaw gives way", -20, -30, 100, 140, 100, 100, -21.2, -29.2},
        {"towards the middle", 30, 20, 140, 100, 100, 100, 30, 18.8},
        // A last step leads beyond the limit. Of the two angles yaw comes second, and pitch gives way even to a yaw
        // that doesn't move.
        {"beyond the limit", 0, 50, 100, 100, 140, 100, 0.8, 51.2},
        {"beyond it already", 0.8f, 51.2f, 100, 100, 140, 100, 0.4, 50.8},
        {"upward beyond it", -51, 0.6f, 100, 140, 100, 100, -49.8, 0.6},
    };
    for (const auto& c : cases) {
        stand(c.pitch, c.yaw);
        motion.drag(c.x1, c.y1, c.x2, c.y2);
        expectAt(c.endPitch, c.endYaw, c.what);
    }
}

// A touch asks for D degrees along the main axis and gets 1.44 * ceil(D / 1.44 / 1.44) of them.
TEST_F(WallTwoViewMotionTest, touchesAimPartOfTheWay) {
    const struct {
        const char* what;
        float x, y;
        double pitch, yaw;
    } cases[] = {
        {"middle", 300, 450, 0, 0},
        {"18 to the right, 28 down", 350, 675, 20.16, 20.16 * 18 / 28},
        {"the bands at the edges are the edge", 550, 430, -36 * 20 / 0.9 / 450, 36},
        // 50.4 either way, shrunk once, and in the quadrant at the bottom right until it is near the diamond.
        {"top left corner", 10, 10, -24.48, -25.92},
        {"bottom right corner", 590, 890, 18.72, 18.72},
        {"left end, all the way", 1, 450, 0, -50.4},
        {"right end", 599, 450, 0, 50.4},
        {"top end", 300, 1, -50.4, 0},
        {"bottom end", 300, 899, 50.4, 0},
    };
    for (const auto& c : cases) {
        stand(0, 0);
        motion.touchDown(c.x, c.y);
        expectAt(c.pitch, c.yaw, c.what);
    }
}

TEST_F(WallTwoViewMotionTest, absurdGesturesLeaveAPicture) {
    constexpr float most = std::numeric_limits<float>::max();
    motion.drag(most, -most, -most, most);
    motion.fling(most, -most);
    motion.updateDetailCamera(matrices);
    for (const float element : matrices._viewMatrix) EXPECT_TRUE(std::isfinite(element));
    motion.touchDown(599, 450);
    expectAt(0, 50.4, "touched after that");
}

}  // namespace
}  // namespace zet::ZETShow
