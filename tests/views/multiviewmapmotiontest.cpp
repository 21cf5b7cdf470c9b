#include "views/multiviewmapmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "views/pose.h"

namespace zet::ZETShow {
namespace {

constexpr float nearPitch = -45.560596f;
constexpr float lowPitch = -65.900597f;

struct MultiViewMapMotionTest : testing::Test {
    MultiViewMapMotionTest() { motion._size.changeTo(1000, 800); }
    void draw(int frames = 1) {
        for (int i = 0; i < frames; ++i) {
            motion.step();
            motion.updateDetailCamera(matrices);
        }
    }
    // A finger on the detail that drags by `dy`, a frame after the touch.
    void hold(float dy) {
        motion.touchDown(750, 400);
        draw();
        motion.drag(750, 400, 750, 400 + dy);
        draw();
    }

    MultiViewMapMotion motion;
    MatrixState matrices;
};

TEST_F(MultiViewMapMotionTest, theMapsMiddleHasNoDirection) {
    draw();
    motion._yaw = 77.0f;
    motion.touchDown(250, 400);
    draw();
    EXPECT_EQ(motion._yaw, 77.0f);
    EXPECT_NEAR(test::Pose(matrices._viewMatrix).ahead.z, -1.0, 1e-6) << "straight at the pole";
}

TEST_F(MultiViewMapMotionTest, dragsActOnThePaneOfTheTouch) {
    draw();
    motion.touchDown(500, 400);  // the line between the halves belongs to the detail
    motion.drag(750, 400, 850, 300);
    EXPECT_FLOAT_EQ(motion._yaw, 11.25f);
    EXPECT_FLOAT_EQ(motion._travel, 1.125f);
    motion.touchDown(499.5f, 1);
    motion.drag(100, 400, 400, 400);  // the second point counts, wherever the first was
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    motion.drag(400, 400, 2000, 401);  // and a finger that has left the map still aims
    EXPECT_NEAR(motion._yaw, 270.0f, 0.1f);
}

TEST_F(MultiViewMapMotionTest, lowTiltSpringsBackByADegreeAFrameUnlessAFingerCatchesIt) {
    draw();
    hold(5000);
    EXPECT_FLOAT_EQ(motion._travel, -1.5066667f);
    EXPECT_NEAR(motion._moveY, 2.6181979, 1e-4);
    EXPECT_NEAR(motion._moveZ, 0.68567199, 1e-4);
    draw(5);
    EXPECT_NEAR(motion._pitch, lowPitch, 1e-4) << "while a finger holds it";
    motion.touchUp();
    draw(8);
    motion.touchDown(750, 400);
    draw(3);
    EXPECT_NEAR(motion._pitch, lowPitch + 8, 1e-3);
    motion.touchUp();
    draw(12);
    EXPECT_NEAR(motion._pitch, lowPitch + 20, 1e-3);
    draw();
    EXPECT_EQ(motion._pitch, nearPitch);
}

TEST_F(MultiViewMapMotionTest, turnsByItselfAndByFlings) {
    constexpr float step = 0.043269236f;
    motion.setAutoRotate(true, 3.0f);
    draw(2);
    motion.fling(-200.0f);
    EXPECT_FLOAT_EQ(motion._yaw, 6 * step - 1.0125f);
    motion.touchDown(750, 400);
    draw();
    EXPECT_FLOAT_EQ(motion._yaw, 9 * step - 1.0125f) << "neither stops the other";
}

TEST_F(MultiViewMapMotionTest, absurdGesturesLeaveAPicture) {
    constexpr float most = std::numeric_limits<float>::max();
    draw();
    motion.setAutoRotate(true, most);
    motion.drag(most, most, -most, -most);
    motion.fling(most);
    draw();
    motion.touchDown(100, 100);
    motion.drag(0, 0, -most, most);
    draw();
    for (const float element : matrices._viewMatrix) EXPECT_TRUE(std::isfinite(element));
}

}  // namespace
}  // namespace zet::ZETShow
