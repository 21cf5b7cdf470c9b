#include <gtest/gtest.h>

#include <utility>

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
    } flights[] = {{Phase::flyingIn, Phase::restingIn, -0.85f}, {Phase::flyingOut, Phase::restingOut, 0}};
    for (const auto& [flying, resting, end] : flights) {
        SCOPED_TRACE(end);
        motion.doubleTap(0, 0);
        steps(motion, 42);
        EXPECT_NE(motion._zoom, end);
        EXPECT_NEAR(motion._zoom, end, 0.0101);
        motion.doubleTap(0, 0);
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
        EXPECT_EQ(motion.phase(), i < 6 ? Phase::restingOut : Phase::restingIn) << i;
    }
    motion.doubleTap(0, 0);
    steps(motion, 12);
    EXPECT_EQ(motion.phase(), Phase::restingOut);
}

TEST(CylinderSphereMotion, theBowlComesNearerOnTheWayUpToAnEnd) {
    CylinderSphereMotion bowl(bowlPose);
    for (const auto& [shown, eyeZ] : {std::pair(41.01, 20.05 - 0.75), {56.12, 20.05 - 1.5}}) {
        bowl.drag(0, 41.01f / 0.1125f, 0, 0);
        bowl.step();
        EXPECT_NEAR(bowl._shownTilt, bowlPose.tiltOffset + shown, 1e-4);
        EXPECT_NEAR(bowl._eyeZ, eyeZ, 1e-5);
    }
}

TEST(CylinderMotions, turnByThemselvesAtOneSpeedUntilATouch) {
    CylinderSideMotion strip;
    CylinderSphereMotion drum(drumPose);
    strip.setAutoRotate(true, 50.0f);
    drum.setAutoRotate(true, 50.0f);
    for (int i = 0; i < 2; ++i) {
        strip.step();
        drum.step();
        EXPECT_NEAR(strip._pan, 2.035 - 0.0021375, 1e-6);
        EXPECT_NEAR(drum._spin, -0.039375, 1e-6);
        strip.touchDown(0, 0);
        drum.touchDown(0, 0);
    }
}

}  // namespace
}  // namespace zet::ZETShow
