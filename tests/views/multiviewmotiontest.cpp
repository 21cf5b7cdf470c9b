#include "views/multiviewmotion.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "views/pose.h"

namespace zet::ZETShow {
namespace {

using test::DomeAngles;
using test::hitDome;
using test::Pose;

struct MultiViewMotionTest : testing::Test {
    MultiViewMotionTest() {
        motion._size.changeTo(1000, 800);
        motion.layoutPanes();
    }
    void drawGrid() {
        for (int p = 0; p < MultiViewMotion::paneCount; ++p) motion.updatePaneCamera(p, matrices[p]);
    }
    Pose pose(int p) {
        motion.updatePaneCamera(p, matrices[p]);
        return Pose(matrices[p]._viewMatrix);
    }
    DomeAngles middle(int p) {
        const Pose camera = pose(p);
        return hitDome(camera.eye, camera.ahead);
    }

    MultiViewMotion motion;
    MatrixState matrices[MultiViewMotion::paneCount];
};

// The sector of each pane: the bottom, right, top and left of the lens circle.
constexpr double sectors[] = {180.0, 90.0, 0.0, 270.0};

double apart(double a, double b) {
    return std::fabs(std::remainder(a - b, 360.0));
}

TEST_F(MultiViewMotionTest, panesTakeTheFourSectorsAtRest) {
    for (int p = 0; p < 4; ++p) {
        const Pose camera = pose(p);
        const DomeAngles seen = hitDome(camera.eye, camera.ahead);
        EXPECT_LT(apart(seen.a, sectors[p]), 0.01) << p;
        EXPECT_NEAR(seen.b, 31.0, 0.3) << p;
        EXPECT_NEAR(std::hypot(camera.eye.x, camera.eye.y), 0.57, 0.01) << p;
        EXPECT_NEAR(camera.eye.z, 0.1, 0.02) << p;
        EXPECT_GT(camera.eye.x * camera.ahead.x + camera.eye.y * camera.ahead.y, 0.0) << p << ": on the other side";
        EXPECT_GT(camera.up.z, 0.5) << p << ": the rim is above";
        EXPECT_NEAR(camera.right.z, 0.0, 1e-5) << p;
    }
}

TEST_F(MultiViewMotionTest, panTurnsTowardsSmallerAnglesAndTiltTowardsThePole) {
    motion._pan[1] = 30.0f;
    EXPECT_LT(apart(middle(1).a, 60.0), 0.01);
    float lower = 0.0f;
    for (const float tilt : {1.0f, 3.0f, 5.0f}) {
        motion._tilt[1] = tilt;
        EXPECT_GT(middle(1).b, lower + 5.0f) << tilt;
        lower = static_cast<float>(middle(1).b);
    }
    motion._tilt[1] = 6.0f;
    const Pose camera = pose(1);
    EXPECT_FLOAT_EQ(motion._tilt[1], 5.50706f);
    EXPECT_NEAR(motion._paneElevation[1], 0.0, 1e-5);
    EXPECT_NEAR(std::hypot(camera.eye.x, camera.eye.y), 0.0, 1e-5) << "on the axis";
    EXPECT_NEAR(camera.ahead.z, -1.0, 1e-6) << "at the pole";
    motion._tilt[1] = -0.1f;
    pose(1);
    EXPECT_EQ(motion._tilt[1], 0.0f);
    EXPECT_FLOAT_EQ(motion._paneElevation[1], -55.0705986f);
    EXPECT_FLOAT_EQ(motion._paneMoveY[1], 2.2072f);
    EXPECT_FLOAT_EQ(motion._paneMoveZ[1], 1.0399932f);
}

TEST_F(MultiViewMotionTest, panIsCorrectedByOneTurnAFrame) {
    struct Case {
        float pan, after;
    };
    for (const Case& c : {Case{0, 0}, Case{-10, 350}, Case{360, 0}, Case{730, 370}, Case{-370, -10}}) {
        motion._pan[2] = c.pan;
        pose(2);
        EXPECT_EQ(motion._pan[2], c.after) << c.pan;
    }
}

TEST_F(MultiViewMotionTest, pointsBelongToPanes) {
    motion._size.changeTo(1001, 801);  // halves are whole numbers
    struct Case {
        float x, y;
        int pane;
    };
    const Case cases[] = {{1, 1, 1},     {500, 400, 1}, {500.5f, 400, 2}, {1001, 400, 2}, {1001, 801, 3},
                          {501, 401, 3}, {500, 401, 0}, {1, 801, 0},      {0, 5, -1},     {5, 0, -1},
                          {1002, 5, -1}, {5, 802, -1},  {-3, 400, -1},    {1e30f, 5, -1}};
    for (const Case& c : cases) EXPECT_EQ(motion.paneAt(c.x, c.y), c.pane) << c.x << ' ' << c.y;
    EXPECT_EQ(MultiViewMotion().paneAt(1, 1), -1) << "before the first layout";
}

TEST_F(MultiViewMotionTest, touchesFallOnThePaneThatShowsThere) {
    for (int p = 0; p < 4; ++p) {
        const PaneRect& rect = motion._paneRects[p];
        const int x = rect.x + rect.width / 2;
        const int y = 800 - (rect.y + rect.height / 2);
        EXPECT_EQ(motion.paneAt(static_cast<float>(x), static_cast<float>(y)), p);
    }
}

TEST_F(MultiViewMotionTest, dragActsOnThePaneWhereItEnds) {
    motion.setAutoRotate(true, 1.0f);
    motion.drag(400, 100, 600, 80);  // from pane 1 into pane 2
    EXPECT_FLOAT_EQ(motion._pan[2], 2 * 200 * 0.1125f);
    EXPECT_FLOAT_EQ(motion._tilt[2], 20 * 0.1125f * 0.2f);
    EXPECT_EQ(motion._pan[1], 0.0f);
    EXPECT_EQ(motion._activePane, 2);
    EXPECT_FALSE(motion._paneAutoRotate[2]);
    EXPECT_TRUE(motion._paneAutoRotate[1]);
    motion.drag(600, 80, 600, -5);  // out of the surface
    EXPECT_FLOAT_EQ(motion._tilt[2], 20 * 0.1125f * 0.2f);
    motion.drag(100, 500, 100, 801);
    EXPECT_EQ(motion._activePane, 2);
}

TEST_F(MultiViewMotionTest, enlargedPaneTakesEveryDrag) {
    motion.doubleTap(500, 400);  // the corner of pane 1
    EXPECT_TRUE(motion._zoomed);
    EXPECT_EQ(motion._selectedPane, 1);
    motion.drag(900, 700, 901, 700);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(static_cast<float>(motion._pan[1])), 0x3de66667u);
    motion.drag(901, 700, 910, 700);
    motion.drag(0, 0, 10, -900);
    EXPECT_FLOAT_EQ(motion._pan[1], 20 * 0.1125f);
    motion.setAutoRotate(true, 1.0f);
    motion.touchDown(900, 700);  // stops the pane of that quadrant, not the one that is shown
    EXPECT_TRUE(motion._paneAutoRotate[1]);
    EXPECT_FALSE(motion._paneAutoRotate[3]);
    motion.doubleTap(900, 700);
    EXPECT_FALSE(motion._zoomed);
    EXPECT_EQ(motion._selectedPane, 1);
    motion.doubleTap(0, 300);  // in no pane
    EXPECT_TRUE(motion._zoomed);
    EXPECT_EQ(motion._selectedPane, 1);
}

TEST_F(MultiViewMotionTest, allPanesTurnWithEachPaneDrawn) {
    constexpr float step = 0.0432692356f;
    motion.setAutoRotate(true, -2.0f);
    motion.touchDown(100, 700);  // pane 0
    drawGrid();
    EXPECT_EQ(motion._pan[0], 0.0f);
    for (int p = 1; p < 4; ++p) EXPECT_NEAR(motion._pan[p], 360 - 4 * 2 * step, 1e-3) << p;
    // Pane 1 was drawn after two of the four steps, pane 3 after all.
    for (int p = 1; p < 4; ++p) {
        const Pose camera(matrices[p]._viewMatrix);
        const double turned = (p + 1) * 2.0 * static_cast<double>(step);
        EXPECT_LT(apart(hitDome(camera.eye, camera.ahead).a, sectors[p] + turned), 1e-3) << p;
    }
    motion.setAutoRotate(false, 1.0f);
    const float stopped = motion._pan[1];
    drawGrid();
    EXPECT_EQ(motion._pan[1], stopped);
}

TEST_F(MultiViewMotionTest, flingTurnsTheActivePaneUnevenly) {
    motion.setAutoRotate(true, 1.0f);
    motion.doubleTap(900, 700);
    motion.fling(100.0f);
    EXPECT_FLOAT_EQ(motion._pan[3], 0.6075f);
    motion.fling(-100.0f);
    EXPECT_FLOAT_EQ(motion._pan[3], 0.6075f - 0.486f);
    EXPECT_FALSE(motion._paneAutoRotate[3]);
    EXPECT_TRUE(motion._paneAutoRotate[0]);
}

TEST_F(MultiViewMotionTest, absurdGesturesLeaveAPicture) {
    constexpr float most = std::numeric_limits<float>::max();
    motion.setAutoRotate(true, -most);
    motion.doubleTap(100, 100);
    motion.drag(most, most, -most, -most);
    motion.drag(-most, -most, most, most);
    motion.fling(most);
    motion.doubleTap(100, 100);
    drawGrid();
    for (const MatrixState& state : matrices) {
        for (const float element : state._viewMatrix) EXPECT_TRUE(std::isfinite(element));
    }
}

}  // namespace
}  // namespace zet::ZETShow
