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

TEST_F(MultiViewMotionTest, pointsBelongToPanes) {
    const struct {
        float x, y;
        int pane;
    } cases[] = {{500, 400, 1}, {500.5f, 400, 2}, {1001, 801, 3}, {501, 401, 3}, {500, 401, 0},
                 {0, 5, -1},    {1002, 5, -1},    {5, 802, -1},   {-3, 400, -1}, {1e30f, 5, -1}};
    for (const auto& [x, y, pane] : cases) EXPECT_EQ(motion.paneAt(x, y), pane) << x << ' ' << y;
}

TEST_F(MultiViewMotionTest, gesturesActOnTheirPane) {
    motion.drag(400, 100, 600, 80);  // from pane 1 into pane 2
    EXPECT_FLOAT_EQ(motion._pan[2], 2 * 200 * 0.1125f);
    motion.doubleTap(500, 400);  // the corner of pane 1, which then takes every drag
    motion.drag(0, 0, 20, -900);
    EXPECT_FLOAT_EQ(motion._pan[1], 20 * 0.1125f);
    drawGrid();
    EXPECT_FLOAT_EQ(motion._tilt[1], 5.50706f);
    EXPECT_NEAR(test::Pose(matrices[1]._viewMatrix).ahead.z, -1.0, 1e-6) << "straight at the pole";
    for (int i = 0; i < 2; ++i) motion.doubleTap(900, 700);
    for (const float speed : {100.0f, -100.0f}) motion.fling(speed);
    EXPECT_FLOAT_EQ(motion._pan[3], 0.6075f - 0.486f) << "the pane of the last tap";
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

TEST_F(MultiViewMapMotionTest, dragsActOnThePaneOfTheTouch) {
    motion.touchDown(500, 400);  // the line between the halves belongs to the detail
    motion.step();
    motion.drag(750, 400, 850, 300);
    EXPECT_FLOAT_EQ(motion._yaw, 11.25f);
    EXPECT_FLOAT_EQ(motion._travel, 1.125f);
    motion.touchDown(499.5f, 1);
    motion.drag(100, 400, 400, 400);  // the second point counts, wherever the first was
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    motion.touchDown(250, 400);
    motion.step();
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f) << "the map's middle has no direction";
    EXPECT_NEAR(motion._pitch, 0, 1e-5) << "and lies at the pole";
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
