// The two views that stand in panes, stepped without GL: four panes of a grid, and a map beside a detail.

#include "views/multiviewmotion.h"

#include <gtest/gtest.h>

#include "views/multiviewmapmotion.h"
#include "views/pose.h"

namespace zet::ZETShow {
namespace {

struct MultiViewMotionTest : testing::Test {
    MultiViewMotionTest() {
        motion._size.changeTo(1001, 801);  // halves are whole numbers
        motion.layoutPanes();
    }
    void drawGrid() {
        for (int p = 0; p < MultiViewMotion::paneCount; ++p) motion.updatePaneCamera(p, matrices[p]);
    }
    MultiViewMotion motion;
    MatrixState matrices[MultiViewMotion::paneCount];
};

TEST_F(MultiViewMotionTest, theTappedPaneTakesDragsAndFlings) {
    motion.doubleTap(500, 400);  // the corner of pane 1
    motion.drag(900, 700, 920, -200);
    motion.fling(100);
    motion.fling(-100);
    EXPECT_FLOAT_EQ(motion._pan[1], 20 * 0.1125f + 0.6075f - 0.486f);
    drawGrid();
    EXPECT_FLOAT_EQ(motion._tilt[1], 5.50706f);
    EXPECT_NEAR(test::Pose(matrices[1]._viewMatrix).ahead.z, -1.0, 1e-6) << "straight at the pole";
}

TEST_F(MultiViewMotionTest, allPanesButTheTouchedTurnWithEachPaneDrawn) {
    motion.setAutoRotate(true, -2.0f);
    motion.touchDown(100, 700);  // pane 0
    drawGrid();
    EXPECT_EQ(motion._pan[0], 0.0f);
    for (int p = 1; p < 4; ++p) EXPECT_NEAR(motion._pan[p], 360 - 4 * 2 * 0.0432692356, 1e-3) << p;
}

struct MultiViewMapMotionTest : testing::Test {
    MultiViewMapMotionTest() {
        motion._size.changeTo(1000, 800);
        motion.step();
    }
    void steps(int frames) {
        for (int i = 0; i < frames; ++i) motion.step();
    }
    MultiViewMapMotion motion;
};

TEST_F(MultiViewMapMotionTest, theMapsMiddleHasNoDirectionAndLiesAtThePole) {
    motion.touchDown(499.5f, 1);
    motion.drag(750, 400, 400, 400);  // on the map its end counts, wherever it began
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    motion.touchDown(250, 400);
    motion.step();
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    EXPECT_NEAR(motion._pitch, 0, 1e-5);
}

TEST_F(MultiViewMapMotionTest, lowTiltSpringsBackByADegreeAFrameUnlessAFingerCatchesIt) {
    constexpr float nearPitch = -45.560596f, lowPitch = -65.900597f;
    motion.touchDown(750, 400);
    motion.step();
    motion.drag(750, 400, 750, 5400);
    steps(5);
    EXPECT_FLOAT_EQ(motion._travel, -1.5066667f);
    EXPECT_NEAR(motion._pitch, lowPitch, 1e-4) << "while a finger holds it";
    EXPECT_NEAR(motion._moveY, 2.6181979, 1e-4);
    EXPECT_NEAR(motion._moveZ, 0.68567199, 1e-4);
    motion.touchUp();
    steps(8);
    motion.touchDown(750, 400);
    steps(3);
    EXPECT_NEAR(motion._pitch, lowPitch + 8, 1e-3) << "caught";
    motion.touchUp();
    steps(12);
    EXPECT_NEAR(motion._pitch, lowPitch + 20, 1e-3);
    motion.step();
    EXPECT_EQ(motion._pitch, nearPitch);
}

TEST_F(MultiViewMapMotionTest, aFlingDoesNotStopTheTurn) {
    motion.setAutoRotate(true, 3.0f);
    steps(2);
    motion.fling(-200.0f);
    motion.step();
    EXPECT_FLOAT_EQ(motion._yaw, 9 * 0.043269236f - 1.0125f);
}

}  // namespace
}  // namespace zet::ZETShow
