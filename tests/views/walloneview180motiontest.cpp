#include "views/walloneview180motion.h"

#include <gtest/gtest.h>

namespace zet::ZETShow {
namespace {

struct WallOneView180MotionTest : testing::Test {
    WallOneView180MotionTest() {
        zoom._size.changeTo(1000, 800);
        motion.step();
        zoom._targetEyeZ = -0.8f;
        motion.step();
    }
    void turn(float yaw, float pitch) {
        zoom._yaw = yaw;
        zoom._pitch = pitch;
    }
    void step(int frames) {
        for (int i = 0; i < frames; ++i) motion.step();
    }

    WallOneView180Motion motion;
    WallZoom& zoom = motion._zoom;
};

TEST_F(WallOneView180MotionTest, springsBackWhenTheFingerLifts) {
    motion.touchDown(500, 400);
    turn(60, -32);
    step(20);
    EXPECT_EQ(zoom._yaw, 60.0f);
    EXPECT_EQ(zoom._pitch, -32.0f);
    motion.touchUp();
    step(10);
    EXPECT_NEAR(zoom._yaw, 57.0, 1e-3);
    EXPECT_NEAR(zoom._pitch, -29.0, 1e-3);
    step(200);
    EXPECT_LT(zoom._yaw, 37.3f);
    EXPECT_GE(zoom._yaw, 37.0f - 1e-3f);
    EXPECT_GT(zoom._pitch, -0.8f);
    EXPECT_LE(zoom._pitch, -0.5f + 1e-3f);
}

TEST_F(WallOneView180MotionTest, springsOnlyInWholeStepsFromOutsideTheMiddle) {
    struct Case {
        float yaw, pitch, yawAfter, pitchAfter;
    };
    const Case cases[] = {{37.1f, 0, 37.1f, 0},   {-37.2f, 0.7f, -37.2f, 0.7f}, {-40, 0, -39.7f, 0},
                          {0, 0.9f, 0, 0.6f},     {37, -0.5f, 37, -0.5f},       {20, -10, 20, -9.7f},
                          {50, 0.4f, 49.7f, 0.4f}};
    for (const Case& c : cases) {
        turn(c.yaw, c.pitch);
        step(1);
        EXPECT_NEAR(zoom._yaw, c.yawAfter, 1e-4) << c.yaw << ' ' << c.pitch;
        EXPECT_NEAR(zoom._pitch, c.pitchAfter, 1e-4) << c.yaw << ' ' << c.pitch;
    }
}

TEST_F(WallOneView180MotionTest, onlyAFingerOnTheSurfaceHolds) {
    struct Case {
        float x, y;
        bool holds;
    };
    for (const Case& c : {Case{0, 0, true}, Case{1000, 800, true}, Case{-1, 5, false}, Case{5, -1, false},
                          Case{1001, 5, false}, Case{5, 801, false}}) {
        motion.touchUp();
        motion.touchDown(c.x, c.y);
        EXPECT_EQ(motion._fingerUp, !c.holds) << c.x << ' ' << c.y;
    }
}

TEST_F(WallOneView180MotionTest, theSweepAndFlightsAreNotPulledBack) {
    zoom.setAutoRotate(true, 1);
    step(300);
    EXPECT_LT(zoom._yaw, -59.5f);
    motion.touchDown(-5, -5);  // beside the surface: stops the sweep, holds nothing
    step(5);
    EXPECT_NEAR(zoom._yaw, -58.5, 0.3);

    turn(0, 20);
    zoom.doubleTap();
    step(2);
    ASSERT_TRUE(zoom._flightBusy);
    const float pitch = zoom._pitch;
    step(1);
    EXPECT_NEAR(pitch - zoom._pitch, 19.7 * 0.05 / 7.2, 1e-4) << "evenly, as the flight has it";
}

}  // namespace
}  // namespace zet::ZETShow
