#include "views/walltwoviewmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "views/parts/sidelook.h"
#include "views/pose.h"

namespace zet::ZETShow {
namespace {

using test::hitDome;
using test::Pose;

constexpr float limit = 50.4f;  // degrees
constexpr double close = 1e-3;  // degrees: a few dozen steps, each rounded to float

TEST(SideLook, shiftIsGreatestOnTheAxesOfTheDiamond) {
    constexpr double most = 1.0486;
    struct Case {
        const char* what;
        float pitch, yaw;
        double shift;
    };
    const Case cases[] = {
        {"middle", 0, 0, 0},
        {"right", 0, limit, most},
        {"up", -limit, 0, most},
        {"diagonal", 20, -20, 0},
        {"half a degree still counts as the axis", 0.5f, 30, most * std::hypot(0.5, 30) / 50.4},
        {"beside the axis", 0.51f, 30, most * std::hypot(0.51, 30) / 50.4 * (1 - 0.51 / 30)},
        {"more yaw than pitch", -10, 30, most * std::hypot(10, 30) / 50.4 * 2 / 3},
        {"more pitch than yaw", 30, 10, most * std::hypot(10, 30) / 50.4 * 2 / 3},
    };
    for (const Case& c : cases) EXPECT_NEAR(sideShift(c.pitch, c.yaw), c.shift, 1e-6) << c.what;
    EXPECT_EQ(sideShift(0, -limit), 1.0486f);
}

// 1200 by 900: the overview answers up to x = 600, its middle is (300, 450).
struct WallTwoViewMotionTest : testing::Test {
    WallTwoViewMotionTest() { motion._size.changeTo(1200, 900); }
    void stand(float pitch, float yaw) {
        motion._pitch = pitch;
        motion._yaw = yaw;
    }
    // A movement by degrees, which a drag is that ends on the overview.
    void turnBy(float pitch, float yaw) {
        const float perPixel = 0.03f;
        motion.drag(300 - yaw / perPixel, 450 - pitch / perPixel, 300, 450);
    }
    void expectAt(double pitch, double yaw, const std::string& what) {
        EXPECT_NEAR(motion._pitch, pitch, close) << what;
        EXPECT_NEAR(motion._yaw, yaw, close) << what;
    }

    WallTwoViewMotion motion;
    MatrixState matrices;
};

TEST_F(WallTwoViewMotionTest, turnsToASideOnTheLens) {
    struct Case {
        const char* what;
        float pitch, yaw;
        double a;  // the dome's angle: bottom, left, top, right are 0, 90, 180, 270
    };
    for (const Case& c : {Case{"right", 0, limit, 270}, Case{"left", 0, -limit, 90}, Case{"down", limit, 0, 360},
                          Case{"up", -limit, 0, 180}}) {
        stand(c.pitch * 2, c.yaw * 2);
        motion.updateDetailCamera(matrices);
        EXPECT_EQ(motion._pitch, c.pitch) << c.what;
        EXPECT_EQ(motion._yaw, c.yaw) << c.what;
        EXPECT_EQ(motion._paneMoveZ, 1.0486f) << c.what;
        const Pose camera(matrices._viewMatrix);
        const auto [a, b] = hitDome(camera.eye, camera.ahead);
        EXPECT_NEAR(std::remainder(a - c.a, 360.0), 0, 0.01) << c.what;
        EXPECT_NEAR(b, 90 - 50.4, 0.01) << c.what;
        EXPECT_NEAR(std::sqrt(dot(camera.eye, camera.eye)), 2 - 1.0486, 1e-5) << c.what;
    }
    WallTwoViewMotion::updateOverviewCamera(matrices);
    const Pose overview(matrices._viewMatrix);
    EXPECT_FLOAT_EQ(static_cast<float>(overview.eye.z), 9.2000008f);
    EXPECT_EQ(overview.ahead.z, -1);
    EXPECT_EQ(overview.up.y, 1);
}

TEST_F(WallTwoViewMotionTest, dragsTurnTheOneWayOrTheOther) {
    struct Case {
        const char* what;
        float x1, y1, x2, y2;
        double pitch, yaw;
        int side;
    };
    const Case cases[] = {
        {"on the overview", 100, 100, 120, 140, 1.2, 0.6, -1},
        {"from the detail into the overview", 620, 100, 599, 140, 1.2, -0.63, -1},
        {"at its edges", 20, 40, 0, 0, -1.2, -0.6, -1},
        {"on the line between the halves", 620, 100, 600, 140, -1.2, 0.6, 1},
        {"on the detail", 1000, 500, 1020, 460, 1.2, -0.6, 1},
        {"out to the left", 20, 100, -1, 100, 0, 0.63, 1},
        {"out at the bottom", 100, 899, 100, 900, -0.03, 0, 1},
        {"a step of its full size", 1000, 500, 1048, 500, 0, -1.44, 1},
        {"14.4 degrees are seven steps", 1000, 500, 520, 500, 0, -10.08, -1},
        {"in proportion", 1000, 500, 1480, 380, 2.52, -10.08, 1},
    };
    for (const Case& c : cases) {
        stand(0, 0);
        motion.drag(c.x1, c.y1, c.x2, c.y2);
        expectAt(c.pitch, c.yaw, c.what);
        EXPECT_EQ(motion._dragSide, c.side) << c.what;
    }
}

TEST_F(WallTwoViewMotionTest, oneAngleGivesWayToTheOther) {
    struct Case {
        float pitch, yaw, dPitch, dYaw;
        double endPitch, endYaw;
    };
    const Case cases[] = {
        {30, 20, 0, 1, 29.4, 21},
        {-30, 20, 0, 1, -29.4, 21},
        {30, -20, 0, -1, 29.4, -21},
        {-30, -20, 0, -1, -29.4, -21},
        {20, 30, 1, 0, 21, 29.4},
        {20, -30, 1, 0, 21, -29.4},
        {-20, 30, -1, 0, -21, 29.4},
        {-20, -30, -1, 0, -21, -29.4},
        {30, 20, 0, -1, 30, 19},
        {30, 20, -1, 1, 29, 21},
        // A last step leads beyond the limit. Of the two angles yaw comes second, and pitch gives way even to a yaw
        // that doesn't move.
        {0, 50, 0, 1, 0.6, 51},
        {0.6f, 51, 0, 1, 0.4, 50.8},
        {0.6f, 51, 0, -1, 0.6, 48.8},
        {-50, 0, -1, 0, -49.8, 0.6},
        {-51, 0.6f, -1, 0, -49.8, 0.6},
    };
    for (const Case& c : cases) {
        stand(c.pitch, c.yaw);
        turnBy(c.dPitch, c.dYaw);
        expectAt(c.endPitch, c.endYaw, std::to_string(c.pitch) + ' ' + std::to_string(c.yaw));
    }
}

TEST_F(WallTwoViewMotionTest, middlesOfTheEdgesAreTheEndsOfTheDiamond) {
    struct Case {
        const char* what;
        float x, y, pitch, yaw;
    };
    const Case cases[] = {
        {"right", 595, 442, 0, limit},
        {"left", 5, 458, 0, -limit},
        {"bottom", 295, 892, limit, 0},
        {"top", 305, 8, -limit, 0},
    };
    for (const Case& c : cases) {
        stand(-7, 9);
        motion.touchDown(c.x, c.y);
        EXPECT_EQ(motion._pitch, c.pitch) << c.what;
        EXPECT_EQ(motion._yaw, c.yaw) << c.what;
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
        {"36 degrees to the right", 400, 450, 0, 25.92},
        {"36 degrees to the left", 200, 450, 0, -25.92},
        {"28 degrees up", 300, 225, -20.16, 0},
        {"28 degrees down", 300, 675, 20.16, 0},
        {"18 to the right, 28 down", 350, 675, 20.16, 20.16 * 18 / 28},
        {"the bands at the edges are the edge", 550, 430, -36 * 20 / 0.9 / 450, 36},
        // 50.4 either way, shrunk once, and in the quadrant at the bottom right until it is near the diamond.
        {"top left corner", 10, 10, -24.48, -25.92},
        {"bottom left corner", 10, 890, 24.48, -25.92},
        {"top right corner", 590, 10, -24.48, 25.92},
        {"bottom right corner", 590, 890, 18.72, 18.72},
    };
    for (const Case& c : cases) {
        stand(0, 0);
        motion.touchDown(c.x, c.y);
        expectAt(c.pitch, c.yaw, c.what);
    }
    stand(0, 25.92f);
    motion.touchDown(400, 450);  // 10.08 are left
    expectAt(0, 33.12, "again");
}

TEST_F(WallTwoViewMotionTest, touchesBesideTheOverviewDoNothing) {
    struct Spot {
        float x, y;
    };
    for (const Spot& spot :
         {Spot{0, 450}, Spot{600, 450}, Spot{900, 200}, Spot{300, 0}, Spot{300, 900}, Spot{-5, -5}}) {
        motion.touchDown(spot.x, spot.y);
        expectAt(0, 0, std::to_string(spot.x));
    }
    WallTwoViewMotion unseen;  // no frame yet, so no overview
    unseen.touchDown(1, 1);
    EXPECT_EQ(unseen._yaw, 0.0f);
}

TEST_F(WallTwoViewMotionTest, flingsGoOnFromTheLastDrag) {
    motion.fling(5000, 5000);
    expectAt(0, 0, "before any drag");
    struct Case {
        const char* what;
        float dragEnd, vx, vy;
        double pitch, yaw;
    };
    for (const Case& c :
         {Case{"right, overview", 100, 1000, 0, 0, -0.405}, Case{"up, overview", 100, 0, -1000, 0.3375, 0},
          Case{"left, detail", 900, -1000, 0, 0, -0.405}, Case{"down, detail", 900, 0, 2000, 0.675, 0},
          Case{"both", 900, 400, 400, 0.135, 0.162}}) {
        motion.drag(c.dragEnd, 5, c.dragEnd, 5);
        stand(0, 0);
        motion.fling(c.vx, c.vy);
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
    EXPECT_LE(std::fabs(motion._pitch) + std::fabs(motion._yaw), limit + 1.44f);
}

}  // namespace
}  // namespace zet::ZETShow
