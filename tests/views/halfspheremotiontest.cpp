#include "views/halfspheremotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "views/starfield.h"

namespace zet::ZETShow {
namespace {

using Phase = HalfSphereMotion::Phase;

constexpr int width = 800, height = 600;

void steps(HalfSphereMotion& motion, int count) {
    for (int i = 0; i < count; ++i) motion.step();
}

// Frames until the flight is over, the one that ends it included.
int fly(HalfSphereMotion& motion) {
    int frames = 0;
    do {
        motion.step();
    } while (++frames < 200 && (motion.phase() == Phase::flyingToFar || motion.phase() == Phase::flyingToNear));
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
    for (int k = 1; k <= 64; ++k) {
        motion.step();
        ASSERT_NEAR(motion._eyeZ, -0.8 + 0.12 * k, 1e-4) << k;
        ASSERT_NEAR(motion._shownYaw, 5.472 * k, 1e-2) << k;
        ASSERT_EQ(motion._pitch, 0) << k;
        ASSERT_NEAR(motion.fratio(), k < 24 ? 0 : (0.12 * k - 2.8) * 0.5 / 5.1, 1e-4) << k;
        ASSERT_EQ(motion.phase(), Phase::flyingToFar) << k;
    }
    motion.step();
    EXPECT_EQ(motion.phase(), Phase::farRest);
    motion.step();
    EXPECT_NEAR(motion._shownYaw, 0.24, 1e-2);
    expectPose(motion, 7.1f, 0, 0, 0);
    EXPECT_FLOAT_EQ(motion.fratio(), 0.5f);
}

TEST(HalfSphereMotion, FlightsTakeTheirFramesAndTurn) {
    HalfSphereMotion bare;
    bare.setSceneBackdrop(false, true);
    bare.setOpeningFlight(true);
    HalfSphereMotion toNear = atFar(), toFar = atNear();
    for (HalfSphereMotion* const motion : {&toNear, &toFar}) motion->doubleTap(width, height / 2, width, height);
    struct Case {
        HalfSphereMotion& motion;
        int frames;
        double turn;
    };
    for (const Case& c : {Case{bare, 66, 364.8}, {toNear, 42, -80}, {toFar, 42, 122.4}}) {
        const float before = c.motion._shownYaw;
        EXPECT_EQ(fly(c.motion), c.frames);
        EXPECT_NEAR(c.motion._shownYaw - before, c.turn, 1e-2);
    }
}

TEST(HalfSphereMotion, TappedDirectionTurnsToTheTop) {
    struct Case {
        float x, y, turn;  // clockwise
    };
    // Less by a ninth of the angle from the vertical on the upper half, by 55/90 of it on the lower one.
    for (const Case& c :
         {Case{500, 200, -40}, {500, 400, -107.5}, {400, 600, 0}, {400, 100, -180}, {300, 400, 107.5}}) {
        HalfSphereMotion motion = atFar();
        const float before = motion._shownYaw;
        motion.doubleTap(c.x, c.y, width, height);
        fly(motion);
        EXPECT_NEAR(motion._shownYaw - before, c.turn, 1e-2) << c.x << ' ' << c.y;
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
    dragTo(-4);
    const float w = (92.287971f - 72) / (92.287971f - 45.560596f);
    expectPose(motion, 2, -72, 3.5770595f + (1.8790853f - 3.5770595f) * w, -0.2396684f + (1.3989465f + 0.2396684f) * w);
    dragTo(1);
    expectPose(motion, 7.1f, 0, 0, 0);
}

TEST(HalfSphereMotion, TheOpeningEndsWhenASettingMovesItsTarget) {
    for (const int flown : {20, 50, 62}) {
        for (const bool backdropOff : {true, false}) {
            SCOPED_TRACE(flown);
            HalfSphereMotion motion;
            steps(motion, flown);
            backdropOff ? motion.setSceneBackdrop(false, false) : motion.setOpeningFlight(false);
            float shown = 0;
            for (int k = 0; k < 60 && motion._opening; ++k) {
                shown = motion._shownYaw;
                motion.step();
                ASSERT_LE(motion._eyeZ, 7.3f);
            }
            EXPECT_NEAR(motion._shownYaw, shown, 5.5) << "the picture must not jump";
            motion.step();
            EXPECT_EQ(motion._eyeZ, motion._farEyeZ);
        }
    }
}

TEST(HalfSphereMotion, AFingerCatchesTheSpring) {
    for (HalfSphereMotion motion : {atNear(), atFar()}) {
        motion.touchDown();
        motion.drag(0, 0, 0, 1000);
        motion.step();
        motion.touchUp();
        steps(motion, 10);
        motion.touchDown();
        steps(motion, 3);
        EXPECT_NEAR(motion._pitch, -82.287971f, 1e-3);
    }
}

TEST(HalfSphereMotion, PinchGoesOneStepAndTakesADoubleTapBackToFar) {
    HalfSphereMotion motion = atFar();
    double travel = 0;
    for (const auto& [factor, step] : {std::pair(1.01f, -1), {5.0f, -1}, {0.9f, 1}, {5.0f, -1}}) {
        motion.pinch(factor);
        motion.step();
        EXPECT_NEAR(motion._travel, travel += step * 0.07875, 1e-6) << factor;
    }
    motion.doubleTap(1, 1, width, height);
    EXPECT_EQ(motion.phase(), Phase::flyingToFar);
}

TEST(HalfSphereMotion, TurnsByItselfAndByFlingsAndStaysFinite) {
    HalfSphereMotion motion = atFar();
    motion.setAutoRotate(true, -2);
    steps(motion, 10);
    EXPECT_NEAR(motion._shownYaw, -20 * 0.086538465, 1e-4);
    motion.fling(-1000);
    steps(motion, 2);
    EXPECT_NEAR(motion._shownYaw, -20 * 0.086538465 - 6.075001, 1e-4) << "a fling stops the turn";
    const float huge = 3e38f;
    motion.drag(-huge, -huge, huge, huge);
    motion.drag(huge, huge, -huge, -huge);
    motion.setAutoRotate(true, huge);
    steps(motion, 3);
    EXPECT_TRUE(std::fabs(motion._shownYaw) <= 360 && std::isfinite(motion._pitch) && std::isfinite(motion._eyeZ));
}

TEST(HalfSphereMotion, TheScenesCameraRunsAheadOfTheBowls) {
    HalfSphereMotion motion;
    motion._farEyeZ = 7.1f;
    for (const auto& [eyeZ, expected] : {std::pair(8.1f, 8.119223f), {6.1f, 6.011572f}, {-0.8f, 0.0f}}) {
        motion._eyeZ = eyeZ;
        EXPECT_NEAR(motion.parallaxEyeZ(), expected, 1e-4) << eyeZ;
    }
}

TEST(StarField, BrightnessGoesUpAndDown) {
    StarField stars;
    stars._pointLight[2] = 0.2f;
    int draws = 0;
    while (stars.stepLight(2) < 1.8f && draws < 1000) ++draws;
    EXPECT_NEAR(draws, 320, 1);
    while (stars.stepLight(2) > 0.2f && draws < 1000) ++draws;
    EXPECT_NEAR(draws, 640, 2);
}

}  // namespace
}  // namespace zet::ZETShow
