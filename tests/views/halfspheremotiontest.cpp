#include "views/halfspheremotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

namespace zet::ZETShow {

namespace {

using Phase = HalfSphereMotion::Phase;

constexpr int width = 800;
constexpr int height = 600;

void steps(HalfSphereMotion& motion, int count) {
    for (int i = 0; i < count; ++i) motion.step();
}

// Frames until the flight is over, the one that ends it included.
int fly(HalfSphereMotion& motion) {
    int frames = 0;
    do {
        motion.step();
        ++frames;
    } while (frames < 200 && (motion.phase() == Phase::flyingToFar || motion.phase() == Phase::flyingToNear));
    return frames;
}

HalfSphereMotion atFar() {
    HalfSphereMotion motion;
    motion.setOpeningFlight(false);
    steps(motion, 2);
    return motion;
}

HalfSphereMotion atNear() {
    HalfSphereMotion motion = atFar();
    motion.doubleTap(width / 2 + 1, 0, width, height);
    fly(motion);
    motion.step();
    return motion;
}

void expectPose(const HalfSphereMotion& motion, float eyeZ, float pitch, float moveY, float moveZ) {
    EXPECT_NEAR(motion._eyeZ, eyeZ, 1e-4);
    EXPECT_NEAR(motion._pitch, pitch, 1e-3);
    EXPECT_NEAR(motion._moveY, moveY, 1e-4);
    EXPECT_NEAR(motion._moveZ, moveZ, 1e-4);
}

TEST(HalfSphereMotion, OpeningRisesInOneTurnFrameByFrame) {
    HalfSphereMotion motion;
    EXPECT_NEAR(motion._eyeZ, -0.8, 1e-6);
    for (int k = 1; k <= 64; ++k) {
        motion.step();
        ASSERT_NEAR(motion._eyeZ, -0.8 + 0.12 * k, 1e-4) << k;
        ASSERT_NEAR(motion._shownYaw, 5.472 * k, 1e-2) << k;
        ASSERT_EQ(motion._pitch, 0) << k;
        ASSERT_NEAR(motion.fratio(), k < 24 ? 0 : (0.12 * k - 2.8) * 0.5 / 5.1, 1e-4) << k;
        ASSERT_TRUE(motion._opening) << k;
        ASSERT_EQ(motion.phase(), Phase::flyingToFar) << k;
    }
    motion.step();
    EXPECT_EQ(motion.phase(), Phase::farRest);
    EXPECT_FALSE(motion._opening);
    EXPECT_NEAR(motion._shownYaw, 360.24, 1e-2);
    EXPECT_NEAR(motion._eyeZ, 6.88, 1e-4);
    motion.step();
    EXPECT_NEAR(motion._shownYaw, 0.24, 1e-2);
    expectPose(motion, 7.1f, 0, 0, 0);
    EXPECT_FLOAT_EQ(motion.fratio(), 0.5f);
}

TEST(HalfSphereMotion, FlightsTakeTheirFramesAndTurn) {
    struct Case {
        const char* name;
        std::function<void(HalfSphereMotion&)> prepare;
        int frames;
        double turn;
    };
    const auto tap = [](HalfSphereMotion& motion) { motion.doubleTap(width, height / 2, width, height); };
    const auto openBare = [](HalfSphereMotion& motion) {
        motion.setSceneBackdrop(false, true);
        motion.setOpeningFlight(true);
    };
    const Case cases[] = {
        {"opening", [](HalfSphereMotion&) {}, 65, 360.24},
        {"opening without a backdrop", openBare, 66, 364.8},
        {"no opening", [](HalfSphereMotion& motion) { motion.setOpeningFlight(false); }, 1, 0},
        {"to near", [&](HalfSphereMotion& motion) { tap(motion = atFar()); }, 42, -80},
        {"to far", [&](HalfSphereMotion& motion) { tap(motion = atNear()); }, 42, 122.4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        HalfSphereMotion motion;
        c.prepare(motion);
        const float before = motion._shownYaw;
        EXPECT_EQ(fly(motion), c.frames);
        EXPECT_NEAR(motion._shownYaw - before, c.turn, 1e-2);
        EXPECT_FALSE(motion._opening);
    }
}

TEST(HalfSphereMotion, AllFourNumbersArriveTogether) {
    HalfSphereMotion motion = atFar();
    motion.doubleTap(1, 1, width, height);
    for (int k = 1; k <= 41; ++k) {
        motion.step();
        const float share = 0.12f * static_cast<float>(k) / 5.1f;
        SCOPED_TRACE(k);
        expectPose(motion, 7.1f - 5.1f * share, -45.560596f * share, 1.8790853f * share, 1.3989465f * share);
    }
    steps(motion, 2);
    EXPECT_EQ(motion.phase(), Phase::nearRest);
    expectPose(motion, 2, -45.560596f, 1.8790853f, 1.3989465f);
}

TEST(HalfSphereMotion, TappedDirectionTurnsToTheTop) {
    struct Case {
        float x;
        float y;
        float angle;  // clockwise from the top
        float turn;   // clockwise
    };
    // Less by a ninth of the angle from the vertical on the upper half, by 55/90 of it on the lower one.
    const Case cases[] = {
        {500, 200, 45, -40},     {800, 300, 90, -80},
        {500, 400, 135, -107.5}, {400, 600, 360, 0},
        {400, 100, 180, -180},  // on the centre line
        {300, 400, 225, 107.5},  {100, 300, 270, 80},
        {300, 200, 315, 40},     {400, 300, 160, -(160 - 20 * 55 / 90.0f)},  // no direction: as it was
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << ", " << c.y);
        HalfSphereMotion motion = atFar();
        const float before = motion._shownYaw;
        motion.doubleTap(c.x, c.y, width, height);
        EXPECT_NEAR(motion._tapAngle, c.angle, 1e-3);
        fly(motion);
        EXPECT_NEAR(motion._shownYaw - before, c.turn, 1e-2);
    }
}

TEST(HalfSphereMotion, PullsBackFromNear) {
    HalfSphereMotion motion = atNear();
    motion.touchDown();
    motion.drag(0, 100, 0, 0);  // upward
    motion.step();
    const float u = 1 - 1.125f / 5.1f;
    expectPose(motion, 3.125f, -45.560596f * u, 1.8790853f * u, 1.3989465f * u);
    EXPECT_FALSE(motion._offRest);
    motion.drag(0, 1000, 0, 0);
    motion.step();
    expectPose(motion, 7.1f, 0, 0, 0);
    EXPECT_TRUE(motion._offRest);
    motion.doubleTap(1, 1, width, height);
    EXPECT_EQ(motion.phase(), Phase::flyingToNear);
}

TEST(HalfSphereMotion, TiltsPastNearUnderAFingerAndSpringsBack) {
    HalfSphereMotion motion = atNear();
    motion.touchDown();
    motion.drag(0, 0, 0, 100);
    motion.step();
    const float pitch = -45.560596f - 1.125f * 18;
    const float u = (pitch + 92.287971f) / (92.287971f - 45.560596f);
    expectPose(motion, 2, pitch, 3.5770595f + (1.8790853f - 3.5770595f) * u,
               -0.2396684f + (1.3989465f + 0.2396684f) * u);
    motion.drag(0, 0, 0, 1000);
    motion.step();
    expectPose(motion, 2, -92.287971f, 3.5770595f, -0.2396684f);

    motion.touchUp();
    for (int k = 1; k <= 46; ++k) {
        motion.step();
        ASSERT_NEAR(motion._pitch, -92.287971f + static_cast<float>(k), 1e-3) << k;
    }
    motion.step();
    EXPECT_EQ(motion._pitch, HalfSphereMotion::_nearPitch);
    motion.step();
    expectPose(motion, 2, -45.560596f, 1.8790853f, 1.3989465f);
}

TEST(HalfSphereMotion, AFingerCatchesTheSpring) {
    for (const bool near : {true, false}) {
        SCOPED_TRACE(near);
        HalfSphereMotion motion = near ? atNear() : atFar();
        motion.touchDown();
        motion.step();
        motion.drag(0, 0, 0, 1000);
        motion.step();
        motion.touchUp();
        steps(motion, 10);
        motion.touchDown();
        steps(motion, 3);
        EXPECT_NEAR(motion._pitch, -82.287971f, 1e-3);
        motion.drag(0, 0, 0, -20);
        motion.step();
        EXPECT_NEAR(motion._pitch, -82.287971f + 20 * 0.01125f * 18, 1e-3);
    }
}

TEST(HalfSphereMotion, ThePathFromFarRunsStraightToLowUntilNearWasSeen) {
    HalfSphereMotion motion = atFar();
    motion.touchDown();
    const auto dragTo = [&motion](float travel) {
        motion.drag(0, 0, 0, (motion._travel - travel) / 0.01125f);
        motion.step();
    };
    dragTo(-2);
    const float u = 1 - 36 / 92.287971f;
    expectPose(motion, 2 + 5.1f * u, -36, 3.5770595f * (1 - u), -0.2396684f * (1 - u));
    dragTo(-9);
    expectPose(motion, 2, -92.287971f, 3.5770595f, -0.2396684f);
    motion.touchUp();
    steps(motion, 47);
    expectPose(motion, 2, -45.560596f, 1.8790853f, 1.3989465f);

    motion.touchDown();
    dragTo(-2);
    const float v = 36 / 45.560596f;
    expectPose(motion, 2 + 5.1f * (1 - v), -36, 1.8790853f * v, 1.3989465f * v);
    dragTo(-4);
    const float w = (92.287971f - 72) / (92.287971f - 45.560596f);
    expectPose(motion, 2, -72, 3.5770595f + (1.8790853f - 3.5770595f) * w, -0.2396684f + (1.3989465f + 0.2396684f) * w);
    dragTo(1);
    expectPose(motion, 7.1f, 0, 0, 0);
}

TEST(HalfSphereMotion, PinchGoesOneStepAndTakesADoubleTapBackToFar) {
    struct Case {
        std::vector<float> factors;
        float travel;
        Phase next;
    };
    const Case cases[] = {
        {{1.01f}, -0.07875f, Phase::flyingToNear},
        {{5.0f, 1.2f}, -0.1575f, Phase::flyingToFar},
        {{5.0f, 1.2f, 0.9f, 1.0f}, 0, Phase::flyingToNear},
        {{0.5f}, 0, Phase::flyingToNear},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.factors.size());
        HalfSphereMotion motion = atFar();
        for (const float factor : c.factors) {
            motion.pinch(factor);
            motion.step();
        }
        EXPECT_NEAR(motion._travel, c.travel, 1e-6);
        motion.doubleTap(1, 1, width, height);
        EXPECT_EQ(motion.phase(), c.next);
    }
}

TEST(HalfSphereMotion, TurnsByDragFlingAndItself) {
    HalfSphereMotion motion = atFar();
    motion.setAutoRotate(true, -2);
    steps(motion, 10);
    EXPECT_NEAR(motion._shownYaw, -20 * 0.086538465, 1e-4);
    motion.drag(10, 0, 110, 0);
    steps(motion, 10);
    EXPECT_NEAR(motion._shownYaw, -20 * 0.086538465 + 20.25, 1e-4);
    motion.fling(-1000);
    steps(motion, 2);
    EXPECT_NEAR(motion._shownYaw, -20 * 0.086538465 + 20.25 - 6.075001, 1e-4);

    const std::pair<const char*, std::function<void(HalfSphereMotion&)>> stoppers[] = {
        {"touch", [](HalfSphereMotion& m) { m.touchDown(); }},
        {"pinch", [](HalfSphereMotion& m) { m.pinch(2); }},
        {"drag", [](HalfSphereMotion& m) { m.drag(0, 0, 0, 0); }},
        {"fling", [](HalfSphereMotion& m) { m.fling(0); }},
    };
    for (const auto& [name, stop] : stoppers) {
        SCOPED_TRACE(name);
        motion.setAutoRotate(true, 1);
        stop(motion);
        EXPECT_FALSE(motion._autoRotate);
    }
}

TEST(HalfSphereMotion, YawStaysFinite) {
    HalfSphereMotion motion = atFar();
    const float huge = 3e38f;
    motion.drag(-huge, -huge, huge, huge);
    motion.drag(huge, huge, -huge, -huge);
    motion.setAutoRotate(true, huge);
    steps(motion, 3);
    EXPECT_LE(std::fabs(motion._shownYaw), 360.0f);
    EXPECT_TRUE(std::isfinite(motion._pitch));
    EXPECT_TRUE(std::isfinite(motion._eyeZ));
}

TEST(HalfSphereMotion, TheOpeningEndsWhenASettingMovesItsTarget) {
    const std::pair<const char*, std::function<void(HalfSphereMotion&)>> settings[] = {
        {"backdrop off", [](HalfSphereMotion& m) { m.setSceneBackdrop(false, false); }},
        {"flight off", [](HalfSphereMotion& m) { m.setOpeningFlight(false); }},
    };
    for (const int flown : {20, 50, 62}) {
        for (const auto& [name, set] : settings) {
            SCOPED_TRACE(testing::Message() << name << " after " << flown);
            HalfSphereMotion motion;
            steps(motion, flown);
            set(motion);
            float shown = 0;
            for (int k = 0; k < 60 && motion._opening; ++k) {
                shown = motion._shownYaw;
                motion.step();
                ASSERT_LE(motion._eyeZ, 7.3f);
            }
            EXPECT_FALSE(motion._opening);
            EXPECT_NEAR(motion._shownYaw, shown, 5.5) << "the picture must not jump";
            motion.step();
            EXPECT_EQ(motion._eyeZ, motion._farEyeZ);
        }
    }
}

TEST(HalfSphereMotion, TheScenesCameraRunsAheadOfTheBowls) {
    struct Case {
        float eyeZ;
        float farEyeZ;
        float expected;
    };
    const Case cases[] = {
        {7.1f, 7.1f, 7.1f}, {8.1f, 7.1f, 8.119223f}, {6.1f, 7.1f, 6.011572f}, {4.1f, 7.1f, 1.712457f}, {3.6f, 7.1f, 0},
        {2, 7.1f, 0},       {-0.8f, 7.1f, 0},        {5.1f, 6.1f, 4.963177f},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.eyeZ);
        HalfSphereMotion motion;
        motion._eyeZ = c.eyeZ;
        motion._farEyeZ = c.farEyeZ;
        EXPECT_NEAR(motion.parallaxEyeZ(), c.expected, 1e-4);
    }
}

}  // namespace

}  // namespace zet::ZETShow
