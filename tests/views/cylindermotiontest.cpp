#include <gtest/gtest.h>

#include "views/cylindersidemotion.h"
#include "views/cylinderspheremotion.h"

namespace zet::ZETShow {
namespace {

using Phase = CylinderSideMotion::Phase;

void steps(CylinderSideMotion& motion, int frames) {
    for (int i = 0; i < frames; ++i) motion.step();
}

TEST(CylinderSideMotion, doubleTapFliesInAndBackIn43Frames) {
    CylinderSideMotion motion;
    motion.step();
    const struct {
        Phase flying, resting;
        float end;
    } flights[] = {{Phase::FlyingIn, Phase::RestingIn, -0.85f}, {Phase::FlyingOut, Phase::RestingOut, 0}};
    for (const auto& [flying, resting, end] : flights) {
        SCOPED_TRACE(end);
        motion.doubleTap();
        steps(motion, 42);
        EXPECT_NE(motion._zoom, end);
        EXPECT_NEAR(motion._zoom, end, 0.0101);
        motion.doubleTap();
        EXPECT_EQ(motion.phase(), flying) << "a tap under way does nothing";
        motion.step();
        EXPECT_EQ(motion._eyeZ, 2.0f + end);
        motion.step();
        EXPECT_EQ(motion.phase(), resting);
    }
}

TEST(CylinderSideMotion, pinchesCrossTheBorderOfTheRestStates) {
    CylinderSideMotion motion;
    motion.step();
    for (int i = 1; i <= 6; ++i) {
        motion.pinch(100.0f);
        motion.step();
        EXPECT_NEAR(motion._zoom, -i * 0.03375, 1e-6);
        EXPECT_EQ(motion.phase(), i < 6 ? Phase::RestingOut : Phase::RestingIn) << i;
    }
    motion.doubleTap();
    steps(motion, 12);
    EXPECT_EQ(motion.phase(), Phase::RestingOut);
}

TEST(CylinderSphereMotion, tiltMovesTheSceneAndTheEye) {
    const struct {
        const char* name;
        double tilt, shown, lift, eyeZ;
    } cases[] = {
        {"beyond the lower end", -100, -4.32, 0.378, 20.05},
        {"half way down", 10.79, 10.79, 0.189, 20.05},
        {"half way up", 41.01, 41.01, 0, 20.05 - 0.75},
        {"beyond the upper end", 300, 56.12, 0, 20.05 - 1.5},
        {"one turn and 10.79 degrees", 370.79, 10.79, 0.189, 20.05},
        {"not quite one turn back", -350, -4.32, 0.378, 20.05},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CylinderSphereMotion motion(bowlPose);
        motion.drag(0, static_cast<float>(c.tilt / 0.1125), 0, 0);
        motion.step();
        EXPECT_NEAR(motion._shownTilt, -126.06 + c.shown, 1e-4);
        EXPECT_NEAR(motion._liftY, c.lift, 1e-5);
        EXPECT_NEAR(motion._eyeZ, c.eyeZ, 1e-5);
    }
}

TEST(CylinderMotions, turnByFlingsAndThenByThemselvesUntilATouch) {
    CylinderSideMotion strip;
    CylinderSphereMotion drum(drumPose);
    const auto expectTurns = [&](double pan, double spin, const char* what) {
        strip.step();
        drum.step();
        EXPECT_NEAR(strip._pan, 2.035 + pan, 1e-6) << what;
        EXPECT_NEAR(drum._spin, spin, 1e-6) << what;
    };
    strip.fling(1000);
    drum.fling(100);
    expectTurns(0.12375, 0.6075001, "to the right");
    strip.fling(-1000);
    drum.fling(-80);
    expectTurns(0, 0, "back; the drum as fast, but a quarter further");
    strip.setAutoRotate(true, 50.0f);
    drum.setAutoRotate(true, 50.0f);
    expectTurns(-0.0021375, -0.039375, "by themselves, at one speed");
    strip.touch();
    drum.touch();
    expectTurns(-0.0021375, -0.039375, "touched");
}

}  // namespace
}  // namespace zet::ZETShow
