#include "views/multiviewmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "views/pose.h"

namespace zet::ZETShow {
namespace {

struct MultiViewMotionTest : testing::Test {
    MultiViewMotionTest() {
        motion._size.changeTo(1000, 800);
        motion.layoutPanes();
    }
    void drawGrid() {
        for (int p = 0; p < MultiViewMotion::paneCount; ++p) motion.updatePaneCamera(p, matrices[p]);
    }
    MultiViewMotion motion;
    MatrixState matrices[MultiViewMotion::paneCount];
};

TEST_F(MultiViewMotionTest, tiltStopsAtThePoleAndAtRest) {
    motion._tilt[1] = 6.0f;
    drawGrid();
    EXPECT_FLOAT_EQ(motion._tilt[1], 5.50706f);
    EXPECT_NEAR(test::Pose(matrices[1]._viewMatrix).ahead.z, -1.0, 1e-6) << "at the pole";
    motion._tilt[1] = -0.1f;
    drawGrid();
    EXPECT_FLOAT_EQ(motion._paneElevation[1], -55.0705986f);
}

TEST_F(MultiViewMotionTest, pointsBelongToPanes) {
    motion._size.changeTo(1001, 801);  // halves are whole numbers
    struct Case {
        float x, y;
        int pane;
    };
    const Case cases[] = {{500, 400, 1}, {500.5f, 400, 2}, {1001, 801, 3}, {501, 401, 3}, {500, 401, 0},
                          {0, 5, -1},    {1002, 5, -1},    {5, 802, -1},   {-3, 400, -1}, {1e30f, 5, -1}};
    for (const Case& c : cases) EXPECT_EQ(motion.paneAt(c.x, c.y), c.pane) << c.x << ' ' << c.y;
    EXPECT_EQ(MultiViewMotion().paneAt(1, 1), -1) << "before the first layout";
}

TEST_F(MultiViewMotionTest, gesturesActOnTheirPane) {
    motion.setAutoRotate(true, 1.0f);
    motion.drag(400, 100, 600, 80);  // from pane 1 into pane 2
    EXPECT_FLOAT_EQ(motion._pan[2], 2 * 200 * 0.1125f);
    EXPECT_FALSE(motion._paneAutoRotate[2]);
    EXPECT_TRUE(motion._paneAutoRotate[1]);
    motion.doubleTap(500, 400);  // the corner of pane 1, which then takes every drag
    motion.drag(900, 700, 901, 700);
    EXPECT_EQ(motion._pan[1], 0x1.cccccep-4f);
    motion.drag(901, 700, 910, 700);
    motion.drag(0, 0, 10, -900);
    EXPECT_FLOAT_EQ(motion._pan[1], 20 * 0.1125f);
    for (int i = 0; i < 2; ++i) motion.doubleTap(900, 700);
    for (const float speed : {100.0f, -100.0f}) motion.fling(speed);
    EXPECT_FLOAT_EQ(motion._pan[3], 0.6075f - 0.486f);
}

TEST_F(MultiViewMotionTest, allPanesTurnWithEachPaneDrawn) {
    constexpr float step = 0.0432692356f;
    motion.setAutoRotate(true, -2.0f);
    motion.touchDown(100, 700);  // pane 0
    drawGrid();
    EXPECT_EQ(motion._pan[0], 0.0f);
    for (int p = 1; p < 4; ++p) EXPECT_NEAR(motion._pan[p], 360 - 4 * 2 * step, 1e-3) << p;
}

TEST_F(MultiViewMotionTest, absurdGesturesLeaveAPicture) {
    constexpr float most = std::numeric_limits<float>::max();
    motion.setAutoRotate(true, -most);
    motion.doubleTap(100, 100);
    motion.drag(most, most, -most, -most);
    motion.fling(most);
    drawGrid();
    for (const MatrixState& state : matrices) {
        for (const float element : state._viewMatrix) EXPECT_TRUE(std::isfinite(element));
    }
}

}  // namespace
}  // namespace zet::ZETShow
