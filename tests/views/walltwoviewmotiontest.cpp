#include "views/walltwoviewmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zet::ZETShow {
namespace {

// 1200 by 900: the overview answers up to x = 600, its middle is (300, 450).
struct WallTwoViewMotionTest : testing::Test {
    WallTwoViewMotionTest() { motion._size.changeTo(1200, 900); }
    void stand(float pitch, float yaw) {
        motion._pitch = pitch;
        motion._yaw = yaw;
    }
    // A movement by degrees, which a drag is that ends on the overview.
    void turnBy(float pitch, float yaw) { motion.drag(300 - yaw / 0.03f, 450 - pitch / 0.03f, 300, 450); }
    // A few dozen steps are each rounded to float.
    void expectAt(double pitch, double yaw, const std::string& what) {
        EXPECT_NEAR(motion._pitch, pitch, 1e-3) << what;
        EXPECT_NEAR(motion._yaw, yaw, 1e-3) << what;
    }

    WallTwoViewMotion motion;
    MatrixState matrices;
};

TEST_F(WallTwoViewMotionTest, dragsTurnTheOneWayOrTheOther) {
    struct Case {
        const char* what;
        float x1, y1, x2, y2;
        double pitch, yaw;
    };
    const Case cases[] = {
        {"on the overview", 100, 100, 120, 140, 1.2, 0.6},
        {"from the detail into the overview", 620, 100, 599, 140, 1.2, -0.63},
        {"on the line between the halves", 620, 100, 600, 140, -1.2, 0.6},
        {"on the detail", 1000, 500, 1020, 460, 1.2, -0.6},
        {"in proportion", 1000, 500, 1480, 380, 2.52, -10.08},
    };
    for (const Case& c : cases) {
        stand(0, 0);
        motion.drag(c.x1, c.y1, c.x2, c.y2);
        expectAt(c.pitch, c.yaw, c.what);
    }
}

TEST_F(WallTwoViewMotionTest, oneAngleGivesWayToTheOther) {
    struct Case {
        float pitch, yaw, dPitch, dYaw;
        double endPitch, endYaw;
    };
    const Case cases[] = {
        {30, 20, 0, 1, 29.4, 21},
        {-20, -30, -1, 0, -21, -29.4},
        {30, 20, 0, -1, 30, 19},
        {30, 20, -1, 1, 29, 21},
        // A last step leads beyond the limit. Of the two angles yaw comes second, and pitch gives way even to a yaw
        // that doesn't move.
        {0, 50, 0, 1, 0.6, 51},
        {0.6f, 51, 0, 1, 0.4, 50.8},
        {0.6f, 51, 0, -1, 0.6, 48.8},
        {-51, 0.6f, -1, 0, -49.8, 0.6},
    };
    for (const Case& c : cases) {
        stand(c.pitch, c.yaw);
        turnBy(c.dPitch, c.dYaw);
        expectAt(c.endPitch, c.endYaw, std::to_string(c.pitch) + ' ' + std::to_string(c.yaw));
    }
}

// A touch asks for D degrees along the main axis and gets 1.44 * ceil(D / 1.44 / 1.44) of them.
TEST_F(WallTwoViewMotionTest, touchesAimPartOfTheWay) {
    struct Case {
        const char* what;
        float x, y;
        double pitch, yaw;
    };
    const Case cases[] = {
        {"middle", 300, 450, 0, 0},
        {"18 to the right, 28 down", 350, 675, 20.16, 20.16 * 18 / 28},
        {"the bands at the edges are the edge", 550, 430, -36 * 20 / 0.9 / 450, 36},
        // 50.4 either way, shrunk once, and in the quadrant at the bottom right until it is near the diamond.
        {"top left corner", 10, 10, -24.48, -25.92},
        {"bottom right corner", 590, 890, 18.72, 18.72},
    };
    for (const Case& c : cases) {
        stand(0, 0);
        motion.touchDown(c.x, c.y);
        expectAt(c.pitch, c.yaw, c.what);
    }
}

TEST_F(WallTwoViewMotionTest, absurdGesturesLeaveAPicture) {
    constexpr float most = std::numeric_limits<float>::max();
    motion.fling(most, -most);
    motion.drag(most, -most, -most, most);
    motion.fling(most, -most);
    motion.updateDetailCamera(matrices);
    for (const float element : matrices._viewMatrix) EXPECT_TRUE(std::isfinite(element));
    EXPECT_LE(std::fabs(motion._pitch) + std::fabs(motion._yaw), 50.4f + 1.44f);
}

}  // namespace
}  // namespace zet::ZETShow
