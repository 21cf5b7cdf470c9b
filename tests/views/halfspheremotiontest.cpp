#include "views/halfspheremotion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zet::ZETShow {
namespace {

using Phase = HalfSphereMotion::Phase;

constexpr int width = 800, height = 600;

void steps(HalfSphereMotion& motion, int count) {
    for (int i = 0; i < count; ++i) motion.step();
}

HalfSphereMotion atFar() {
    HalfSphereMotion motion;
    motion._size.changeTo(width, height);
    motion.setOpeningFlight(false);
    steps(motion, 2);
    return motion;
}

HalfSphereMotion atNear() {
    HalfSphereMotion motion = atFar();
    motion.doubleTap(width / 2 + 1, 0);
    steps(motion, 43);
    return motion;
}

void dragTo(HalfSphereMotion& motion, float travel) {
    motion.drag(0, 0, 0, (motion._travel - travel) / 0.01125f);
    motion.step();
}

void expectPose(const HalfSphereMotion& motion, float eyeZ, float pitch, float moveY, float moveZ) {
    EXPECT_NEAR(motion._eyeZ, eyeZ, 1e-4);
    EXPECT_NEAR(motion._pitch, pitch, 1e-3);
    EXPECT_NEAR(motion._moveY, moveY, 1e-4);
    EXPECT_NEAR(motion._moveZ, moveZ, 1e-4);
}

TEST(HalfSphereMotion, openingRisesInOneTurnFrameByFrame) {
    const struct {
        bool backdrop;
        int frames;  // before the one that ends it
        double start, far, restYaw;
    } cases[] = {{true, 64, -0.8, 7.1, 0.24}, {false, 65, -1.9, 6.1, 4.8}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.backdrop);
        HalfSphereMotion motion;
        motion.setSceneBackdrop(c.backdrop, false);  // before the first frame
        for (int k = 1; k <= c.frames; ++k) {
            motion.step();
            const double eyeZ = c.start + 0.12 * k;
            ASSERT_NEAR(motion._eyeZ, eyeZ, 1e-4) << k;
            ASSERT_NEAR(motion._shownYaw, 5.472 * k, 1e-2) << k;
            ASSERT_NEAR(motion.remoteness(), std::max(0.0, (eyeZ - 2) * 0.5 / (c.far - 2)), 1e-4) << k;
            ASSERT_EQ(motion.phase(), Phase::flyingToFar) << k;
        }
        motion.step();
        EXPECT_EQ(motion.phase(), Phase::farRest);
        motion.step();
        EXPECT_NEAR(motion._shownYaw, c.restYaw, 1e-2);
        expectPose(motion, static_cast<float>(c.far), 0, 0, 0);
        EXPECT_FLOAT_EQ(motion.remoteness(), 0.5f);
    }
}

TEST(HalfSphereMotion, aDoubleTapFliesAndTurnsWhatWasTappedToTheTop) {
    // The turn is less by a ninth of the angle from the vertical on the upper half, by 55/90 of it on the lower one.
    const struct {
        HalfSphereMotion motion;
        float x, y, turn;  // clockwise
    } cases[] = {{atFar(), 800, 300, -80},    {atFar(), 500, 200, -40}, {atFar(), 500, 400, -107.5},
                 {atFar(), 300, 400, 107.5},  {atFar(), 400, 600, 0},   {atFar(), 400, 100, -180},
                 {atNear(), 800, 300, 122.4f}};
    for (auto [motion, x, y, turn] : cases) {
        const float before = motion._shownYaw;
        motion.doubleTap(x, y);
        const Phase flying = motion.phase();
        steps(motion, 41);
        EXPECT_EQ(motion.phase(), flying);
        motion.step();
        EXPECT_NE(motion.phase(), flying);
        EXPECT_NEAR(motion._shownYaw - before, turn, 1e-2) << x << ' ' << y;
    }
}

TEST(HalfSphereMotion, aTiltPastNearSpringsBackAndFromThenOnThePathLeadsThroughNear) {
    HalfSphereMotion motion = atFar();
    motion.touchDown(0, 0);
    dragTo(motion, -9);
    motion.touchUp(0, 0);
    steps(motion, 10);
    motion.touchDown(0, 0);
    steps(motion, 3);
    EXPECT_NEAR(motion._pitch, -82.287971f, 1e-3) << "a degree a frame, until a finger catches it";
    motion.touchUp(0, 0);
    steps(motion, 37);
    expectPose(motion, 2, -45.560596f, 1.8790853f, 1.3989465f);
    motion.touchDown(0, 0);
    dragTo(motion, -4);
    const float w = (92.287971f - 72) / (92.287971f - 45.560596f);
    expectPose(motion, 2, -72, std::lerp(3.5770595f, 1.8790853f, w), std::lerp(-0.2396684f, 1.3989465f, w));
    dragTo(motion, 1);
    expectPose(motion, 7.1f, 0, 0, 0);
}

TEST(HalfSphereMotion, aDoubleTapOffRestFliesBackToIt) {
    HalfSphereMotion pinched = atFar();
    double travel = 0;
    for (const auto& [factor, step] : {std::pair(1.01f, -1), {5.0f, -1}, {0.9f, 1}, {5.0f, -1}}) {
        pinched.pinch(factor);
        pinched.step();
        EXPECT_NEAR(pinched._travel, travel += step * 0.07875, 1e-6) << factor << ": only the direction counts";
    }
    pinched.doubleTap(1, 1);
    EXPECT_EQ(pinched.phase(), Phase::flyingToFar);

    HalfSphereMotion pulled = atNear();
    dragTo(pulled, 5.1f / 2);
    expectPose(pulled, 2 + 5.1f / 2, -45.560596f / 2, 1.8790853f / 2, 1.3989465f / 2);
    dragTo(pulled, 9);
    expectPose(pulled, 7.1f, 0, 0, 0);
    pulled.doubleTap(1, 1);
    EXPECT_EQ(pulled.phase(), Phase::flyingToNear);
}

}  // namespace
}  // namespace zet::ZETShow
