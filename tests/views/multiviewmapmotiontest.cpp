#include "views/multiviewmapmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "views/parts/detailarea.h"
#include "views/pose.h"

namespace zet::ZETShow {
namespace {

using test::DomeAngles;
using test::hitDome;
using test::Pose;

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
    DomeAngles middle() {
        draw();
        const Pose camera(matrices._viewMatrix);
        return hitDome(camera.eye, camera.ahead);
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

TEST_F(MultiViewMapMotionTest, firstFrameStandsAtTheNearPose) {
    const DomeAngles seen = middle();
    EXPECT_EQ(motion._pitch, nearPitch);
    EXPECT_EQ(motion._moveY, 1.8790853f);
    EXPECT_EQ(motion._moveZ, 1.3989465f);
    EXPECT_NEAR(seen.a, 180.0, 0.01) << "the top of the lens circle";
    EXPECT_GT(Pose(matrices._viewMatrix).up.z, 0.5) << "the rim is above";
}

TEST_F(MultiViewMapMotionTest, touchOnTheMapTurnsTheDetailThere) {
    draw();
    struct Spot {
        float x, y;
    };
    const Spot spots[] = {{50, 400},  {450, 400}, {251, 100}, {249, 700},
                          {100, 250}, {400, 250}, {100, 550}, {400, 550}};
    for (const Spot& spot : spots) {
        motion.touchDown(spot.x, spot.y);
        // On the map the dome's angle goes from the bottom to the left.
        const double wanted = std::atan2(250.0 - static_cast<double>(spot.x), static_cast<double>(spot.y) - 400.0);
        EXPECT_NEAR(std::remainder(middle().a - wanted * test::halfTurn, 360.0), 0.0, 0.01) << spot.x << ' ' << spot.y;
        EXPECT_EQ(motion._activePane, 1);
        EXPECT_TRUE(motion._fingerUp);
    }
}

TEST_F(MultiViewMapMotionTest, distanceFromTheMapsMiddleIsTheTilt) {
    draw();
    const double corner = std::hypot(250.0, 400.0);
    struct Case {
        float x;
        double travel;
    };
    const double most = 4.5560596;
    for (const Case& c : {Case{251, most * (1 - 1.8 / corner)}, Case{150, most * (1 - 180 / corner)},
                          Case{1, most * (1 - 448.2 / corner)}}) {
        motion.touchDown(c.x, 400);
        draw();
        EXPECT_NEAR(motion._travel, c.travel, 1e-4) << c.x;
        EXPECT_NEAR(motion._pitch, c.travel * 10 - 45.560596, 1e-3) << c.x;
    }
    motion.touchDown(1, 1);  // beyond the reach
    draw();
    EXPECT_EQ(motion._travel, 0.0f);
}

TEST_F(MultiViewMapMotionTest, theMapsMiddleHasNoDirection) {
    draw();
    motion._yaw = 77.0f;
    motion.touchDown(250, 400);
    draw();
    EXPECT_EQ(motion._yaw, 77.0f);
    EXPECT_NEAR(motion._pitch, 0.0, 1e-5);
    EXPECT_NEAR(motion._moveY, 0.0, 1e-6);
    EXPECT_NEAR(Pose(matrices._viewMatrix).ahead.z, -1.0, 1e-6) << "straight at the pole";
}

TEST_F(MultiViewMapMotionTest, halvesOfTheSurfaceDecide) {
    struct Case {
        const char* what;
        float x, y;
        int pane;  // 2: neither
    };
    const Case cases[] = {{"left edge", 0, 400, 2},  {"the map", 499.5f, 1, 1},     {"margin above the map", 10, 2, 1},
                          {"the line", 500, 400, 0}, {"right edge", 1000, 800, 0},  {"margin of the detail", 998, 0, 0},
                          {"beyond", 1001, 400, 2},  {"under the map", 200, 800, 2}};
    for (const Case& c : cases) {
        motion._activePane = 2;
        motion._fingerUp = true;
        motion.touchDown(c.x, c.y);
        EXPECT_EQ(motion._activePane, c.pane) << c.what;
        EXPECT_EQ(motion._fingerUp, c.pane != 0) << c.what;
    }
}

TEST_F(MultiViewMapMotionTest, dragsActOnThePaneOfTheTouch) {
    draw();
    motion.drag(750, 400, 850, 300);
    EXPECT_FLOAT_EQ(motion._yaw, 11.25f);
    EXPECT_FLOAT_EQ(motion._travel, 1.125f);
    motion.touchDown(100, 400);
    motion.drag(100, 400, 400, 400);  // the second point counts, wherever the first was
    EXPECT_FLOAT_EQ(motion._yaw, 270.0f);
    motion.drag(400, 400, 2000, 401);  // and a finger that has left the map still aims
    EXPECT_NEAR(motion._yaw, 270.0f, 0.1f);
    EXPECT_EQ(motion._travel, 0.0f);
}

TEST_F(MultiViewMapMotionTest, tiltStopsAtBothEndsOfThePath) {
    draw();
    hold(5000);
    EXPECT_FLOAT_EQ(motion._travel, -1.5066667f);
    EXPECT_NEAR(motion._pitch, lowPitch, 1e-4);
    EXPECT_NEAR(motion._moveY, 2.6181979, 1e-4);
    EXPECT_NEAR(motion._moveZ, 0.68567199, 1e-4);
    hold(-9000);
    EXPECT_FLOAT_EQ(motion._travel, 4.5560597f);
    EXPECT_NEAR(motion._pitch, 0.0, 1e-5);
}

TEST_F(MultiViewMapMotionTest, lowTiltSpringsBackByADegreeAFrame) {
    draw();
    hold(5000);
    draw(5);
    EXPECT_NEAR(motion._pitch, lowPitch, 1e-4) << "while a finger holds it";
    motion.touchUp();
    draw(20);
    EXPECT_NEAR(motion._pitch, lowPitch + 20, 1e-3);
    draw();
    EXPECT_EQ(motion._pitch, nearPitch);
    EXPECT_EQ(motion._travel, 0.0f);
    EXPECT_NEAR(motion._moveY, 1.8790853, 1e-5);
    EXPECT_NEAR(motion._moveZ, 1.3989465, 1e-5);
}

TEST_F(MultiViewMapMotionTest, fingerCatchesTheSpring) {
    draw();
    hold(5000);
    motion.touchUp();
    draw(8);
    const float caught = motion._pitch;
    motion.touchDown(750, 400);
    draw(3);
    EXPECT_NEAR(motion._pitch, caught, 1e-4);
    motion.drag(0, 0, 0, -40);
    draw();
    EXPECT_NEAR(motion._pitch, caught + 40 * 0.01125f * 13.5f, 1e-3);
}

TEST_F(MultiViewMapMotionTest, mapAimsWhileTheTiltSpringsBack) {
    draw();
    hold(5000);
    motion.touchUp();
    draw(2);
    motion.touchDown(251, 400);
    draw(2);
    EXPECT_NEAR(motion._pitch, lowPitch + 4, 1e-3) << "the spring goes on";
}

TEST_F(MultiViewMapMotionTest, turnsByItselfAndByFlings) {
    constexpr float step = 0.043269236f;
    motion.setAutoRotate(true, 3.0f);
    draw(2);
    EXPECT_FLOAT_EQ(motion._yaw, 6 * step);
    motion.fling(-200.0f);
    EXPECT_FLOAT_EQ(motion._yaw, 6 * step - 1.0125f);
    motion.touchDown(750, 400);
    draw();
    EXPECT_FLOAT_EQ(motion._yaw, 9 * step - 1.0125f) << "neither stops the other";
    motion.setAutoRotate(false, 3.0f);
    motion._yaw = -725.5f;
    draw();
    EXPECT_EQ(motion._yaw, -725.5f);
    EXPECT_EQ(motion._shownYaw, -5.5f);
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

TEST(DetailArea, twoSquaresInTheMiddle) {
    struct Case {
        int width, height, x, y, side;  // of the map
    };
    for (const Case& c : {Case{1920, 1080, 12, 66, 948}, Case{2400, 1000, 226, 13, 974}, Case{1000, 500, 6, 3, 494},
                          Case{1001, 500, 6, 3, 494}, Case{11, 11, 0, 3, 5}}) {
        DetailArea area;
        area.layoutPanes(c.width, c.height);
        const PaneRect& map = area._paneRects[1];
        const PaneRect& detail = area._paneRects[0];
        EXPECT_EQ(std::tuple(map.x, map.y, map.width, map.height), std::tuple(c.x, c.y, c.side, c.side)) << c.width;
        EXPECT_EQ(std::tuple(detail.x, detail.y, detail.width, detail.height),
                  std::tuple(c.x + c.side, c.y, c.side, c.side))
            << c.width;
    }
}

}  // namespace
}  // namespace zet::ZETShow
