// The views that are drawn in panes, stepped without GL.

#include <gtest/gtest.h>

#include "views/multiviewmapmotion.h"
#include "views/multiviewmotion.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {
namespace {

TEST(MultiViewMotion, allPanesButTheTouchedTurnWithEachPaneDrawn) {
    MultiViewMotion motion;
    motion._size.changeTo(1001, 801);
    motion.layoutPanes();
    motion.setAutoRotate(true, -2.0f);
    motion.touchDown(100, 700);  // pane 0
    MatrixState matrices;
    for (int p = 0; p < 4; ++p) motion.updatePaneCamera(p, matrices);
    EXPECT_EQ(motion._pan[0], 0.0f);
    for (int p = 1; p < 4; ++p) EXPECT_NEAR(motion._pan[p], 360 - 4 * 2 * 0.0432692356, 1e-3) << p;
}

struct MultiViewMapNumbers : testing::Test {
    MultiViewMapNumbers() {
        motion._size.changeTo(1000, 800);
        motion.step();
    }
    void steps(int frames) {
        for (int i = 0; i < frames; ++i) motion.step();
    }
    MultiViewMapMotion motion;
};

TEST_F(MultiViewMapNumbers, theMapsMiddleHasNoDirectionAndLiesAtThePole) {
    motion.touchDown(499.5f, 1);
    motion.drag(750, 400, 400, 400);  // on the map its end counts, wherever it began
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    motion.touchDown(250, 400);
    motion.step();
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    EXPECT_NEAR(motion._pitch, 0, 1e-5);
}

TEST_F(MultiViewMapNumbers, turnsOnHoweverManyTurnsLieBehind) {
    motion.drag(750, 400, 750 + 1.6e8f, 400);  // 50,000 turns, beyond which a float counts degrees
    motion.setAutoRotate(true, 1);
    steps(1);
    const float before = motion._yaw;
    steps(100);
    EXPECT_NEAR(motion._yaw, before + 100 * 0.043269236, 0.1);
}

TEST_F(MultiViewMapNumbers, lowTiltSpringsBackByADegreeAFrameUnlessAFingerCatchesIt) {
    constexpr float nearPitch = -45.560596f, lowPitch = -65.900597f;
    motion.touchDown(750, 400);
    motion.step();
    motion.drag(750, 400, 750, 5400);
    steps(5);
    EXPECT_FLOAT_EQ(motion._travel, -1.5066667f);
    EXPECT_NEAR(motion._pitch, lowPitch, 1e-4) << "while a finger holds it";
    EXPECT_NEAR(motion._moveY, 2.6181979, 1e-4);
    EXPECT_NEAR(motion._moveZ, 0.68567199, 1e-4);
    motion.touchUp(0, 0);
    steps(8);
    motion.touchDown(750, 400);
    steps(3);
    EXPECT_NEAR(motion._pitch, lowPitch + 8, 1e-3) << "caught";
    motion.touchUp(0, 0);
    steps(12);
    EXPECT_NEAR(motion._pitch, lowPitch + 20, 1e-3);
    motion.step();
    EXPECT_EQ(motion._pitch, nearPitch);
}

// 1200 by 900: the overview answers up to x = 600, its middle is (300, 450).
struct WallTwoNumbers : testing::Test {
    WallTwoNumbers() { motion._size.changeTo(1200, 900); }
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

TEST_F(WallTwoNumbers, dragsTurnWithinADiamond) {
    const struct {
        const char* what;
        float pitch, yaw, x1, y1, x2, y2;
        double endPitch, endYaw;
    } cases[] = {
        {"from the detail into the overview", 0, 0, 620, 100, 599, 140, 1.2, -0.63},
        {"on the line between the halves", 0, 0, 620, 100, 600, 140, -1.2, 0.6},
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
}

// A touch asks for D degrees along the main axis and gets 1.44 * ceil(D / 1.44 / 1.44) of them.
TEST_F(WallTwoNumbers, touchesAimPartOfTheWay) {
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
    };
    for (const auto& c : cases) {
        stand(0, 0);
        motion.touchDown(c.x, c.y);
        expectAt(c.pitch, c.yaw, c.what);
    }
}

}  // namespace
}  // namespace zet::ZETShow
