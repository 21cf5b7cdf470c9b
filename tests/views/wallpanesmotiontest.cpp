#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "views/parts/detailarea.h"
#include "views/wallthreeviewmotion.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {
namespace {

// x, y, width and height, from the bottom left corner: overview and detail of the two; left, right and panorama of the
// three; and the aspect of the latter.
std::string panesOn(int width, int height) {
    DetailArea two;
    two.layoutPanes(width, height);
    WallThreeViewMotion three;
    three._size.changeTo(width, height);
    three.layoutPanes();
    std::ostringstream out;
    for (const PaneRect& rect : {two._paneRects[DetailArea::mapPane], two._paneRects[DetailArea::detailPane],
                                 three._paneRects[0], three._paneRects[2], three._paneRects[1]}) {
        out << rect.x << ' ' << rect.y << ' ' << rect.width << ' ' << rect.height << ", ";
    }
    out << three._aspect;
    return out.str();
}

TEST(WallPanes, divideTheSurface) {
    EXPECT_EQ(panesOn(1920, 1080), "12 66 948 948, 960 66 948 948, 0 541 959 539, 961 541 959 539, 0 0 1920 539, 1");
    EXPECT_EQ(panesOn(2400, 1000),
              "226 13 974 974, 1200 13 974 974, 0 501 1199 499, 1201 501 1199 499, 0 0 2400 499, 2");
    EXPECT_EQ(panesOn(500, 900), "3 326 247 247, 250 326 247 247, 0 451 249 449, 251 451 249 449, 0 0 500 449, 0");
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
};

TEST_F(WallTwoViewMotionTest, dragsTurnWithinADiamond) {
    motion.fling(1000, -2000);
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
        {"pitch gives way", 30, 20, 100, 100, 140, 100, 29.2, 21.2},
        {"yaw gives way", -20, -30, 100, 140, 100, 100, -21.2, -29.2},
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
    stand(0, 0);
    motion.fling(1000, -2000);
    expectAt(0.675, -0.405, "flung after a drag on the overview");
    motion.drag(1000, 500, 1000, 500);
    motion.fling(2000, -4000);
    expectAt(-0.675, 0.405, "flung after one on the detail");
    constexpr float huge = std::numeric_limits<float>::max();
    motion.drag(huge, -huge, -huge, huge);
    motion.fling(huge, -huge);
    EXPECT_LE(std::fabs(motion._pitch) + std::fabs(motion._yaw), 50.4f + 1.44f) << "and finite";
}

// A touch asks for D degrees along the main axis and gets 1.44 * ceil(D / 1.44 / 1.44) of them.
TEST_F(WallTwoViewMotionTest, touchesAimPartOfTheWay) {
    const struct {
        const char* what;
        float x, y;
        double pitch, yaw;
    } cases[] = {
        {"18 to the right, 28 down", 350, 675, 20.16, 20.16 * 18 / 28},
        {"the bands at the edges are the edge", 550, 430, -36 * 20 / 0.9 / 450, 36},
        // 50.4 either way, shrunk once, and in the quadrant at the bottom right until it is near the diamond.
        {"top left corner", 10, 10, -24.48, -25.92},
        {"bottom right corner", 590, 890, 18.72, 18.72},
        {"left end, all the way there", 1, 450, 0, -50.4},
        {"top end", 300, 1, -50.4, 0},
    };
    for (const auto& c : cases) {
        stand(0, 0);
        motion.touchDown(c.x, c.y);
        expectAt(c.pitch, c.yaw, c.what);
    }
}

}  // namespace
}  // namespace zet::ZETShow
