#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "views/cylindersidemotion.h"
#include "views/cylinderspheremotion.h"

namespace zet::ZETShow {
namespace {

constexpr float huge = std::numeric_limits<float>::max();

using Phase = CylinderSideMotion::Phase;

void steps(CylinderSideMotion& motion, int frames) {
    for (int i = 0; i < frames; ++i) motion.step();
}

TEST(CylinderSideMotion, doubleTapFliesInAndBackIn43Frames) {
    CylinderSideMotion motion;
    motion.step();
    struct Flight {
        Phase flying, resting;
        float end;
    };
    for (const Flight& flight :
         {Flight{Phase::FlyingIn, Phase::RestingIn, -0.85f}, {Phase::FlyingOut, Phase::RestingOut, 0}}) {
        SCOPED_TRACE(flight.end);
        motion.doubleTap();
        steps(motion, 42);
        EXPECT_NE(motion._zoom, flight.end);
        EXPECT_NEAR(motion._zoom, flight.end, 0.0101);
        motion.doubleTap();  // under way: nothing
        EXPECT_EQ(motion.phase(), flight.flying);
        motion.step();
        EXPECT_EQ(motion._eyeZ, 2.0f + flight.end);
        steps(motion, 51);
        EXPECT_EQ(motion.phase(), flight.resting);
        EXPECT_EQ(motion._zoom, flight.end);
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

TEST(CylinderSideMotion, turnsByDragFlingAndItselfAfterAnyNumberOfTurns) {
    CylinderSideMotion motion;
    const auto turn = [&motion](auto&& gesture) {
        const double before = motion._ptZm;
        gesture();
        motion.step();
        return std::remainder(motion._ptZm - before, 2 * std::numbers::pi);
    };
    for (int i = 0; i < 100; ++i) motion.drag(-huge, huge);
    motion.fling(huge);
    motion.step();
    EXPECT_NEAR(turn([&] { motion.drag(100, 300); }), -0.45, 1e-3);
    EXPECT_NEAR(turn([&] { motion.fling(1000); }), -0.12375, 1e-3);
    motion.setAutoRotate(true, 50.0f);
    for (int i = 0; i < 2; ++i) EXPECT_NEAR(turn([] {}), 0.0021375, 1e-4) << "at one speed";
    EXPECT_EQ(turn([&] { motion.touch(); }), 0.0);
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

TEST(CylinderSphereMotion, spinsByDragFlingAndItselfAfterAnyNumberOfTurns) {
    CylinderSphereMotion motion(drumPose);
    const auto turn = [&motion](auto&& gesture) {
        const double before = motion._shownSpin;
        gesture();
        motion.step();
        return std::remainder(motion._shownSpin - before, 360.0);
    };
    for (int i = 0; i < 100; ++i) motion.drag(-huge, -huge, huge, huge);
    motion.fling(huge);
    motion.step();
    ASSERT_LT(std::fabs(motion._shownSpin), 360.0f);
    EXPECT_NEAR(turn([&] { motion.drag(100, 50, 300, 1050); }), 22.5, 1e-3);
    EXPECT_NEAR(motion._shownTilt, -118.307 - 1.043, 1e-4);
    EXPECT_NEAR(turn([&] { motion.fling(100); }), 0.6075001, 1e-3);
    EXPECT_NEAR(turn([&] { motion.fling(-100); }), -0.75937505, 1e-3) << "as fast, a quarter further";
    motion.setAutoRotate(true, 50.0f);
    EXPECT_EQ(turn([] {}), 0) << "the turn shows in the frame after it";
    EXPECT_NEAR(turn([] {}), -0.039375, 1e-3) << "at one speed";
}

}  // namespace
}  // namespace zet::ZETShow
