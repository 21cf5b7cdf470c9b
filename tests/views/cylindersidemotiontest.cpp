#include "views/cylindersidemotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace zet::ZETShow {
namespace {

using Phase = CylinderSideMotion::Phase;

constexpr float huge = std::numeric_limits<float>::max();

void stepTimes(CylinderSideMotion& motion, int frames) {
    for (int i = 0; i < frames; ++i) motion.step();
}

// How far the strip has turned between two cuts, whatever the whole turns.
double turned(float from, float to) {
    return std::remainder(static_cast<double>(to) - from, 2.0 * std::numbers::pi);
}

TEST(CylinderSideMotionTest, restsOutAfterTheFirstFrame) {
    CylinderSideMotion motion;
    EXPECT_EQ(motion.phase(), Phase::FlyingOut);
    motion.step();
    EXPECT_EQ(motion.phase(), Phase::RestingOut);
    EXPECT_EQ(motion._eyeZ, 2.0f);
    EXPECT_EQ(motion._ptZm, -2.035f);
}

TEST(CylinderSideMotionTest, doubleTapFliesInAndBackIn43Frames) {
    CylinderSideMotion motion;
    motion.step();
    const struct {
        const char* name;
        Phase flying, resting;
        float end;
    } flights[] = {{"in", Phase::FlyingIn, Phase::RestingIn, -0.85f}, {"out", Phase::FlyingOut, Phase::RestingOut, 0}};
    for (const auto& flight : flights) {
        SCOPED_TRACE(flight.name);
        motion.doubleTap();
        EXPECT_EQ(motion.phase(), flight.flying);
        stepTimes(motion, 42);
        EXPECT_NE(motion._zoom, flight.end);
        EXPECT_NEAR(motion._zoom, flight.end, 0.0101);
        motion.doubleTap();  // under way: nothing
        EXPECT_EQ(motion.phase(), flight.flying);
        motion.step();
        EXPECT_EQ(motion._zoom, flight.end);
        EXPECT_EQ(motion._eyeZ, 2.0f + flight.end);
        motion.step();
        EXPECT_EQ(motion.phase(), flight.resting);
        stepTimes(motion, 50);
        EXPECT_EQ(motion.phase(), flight.resting);
        EXPECT_EQ(motion._zoom, flight.end);
    }
}

TEST(CylinderSideMotionTest, pinchesCrossTheBorderOfTheRestStates) {
    CylinderSideMotion motion;
    motion.step();
    for (int i = 0; i < 5; ++i) motion.pinch(1.01f);
    motion.step();
    EXPECT_NEAR(motion._zoom, -5 * 0.03375, 1e-6);
    EXPECT_EQ(motion.phase(), Phase::RestingOut);
    motion.pinch(100.0f);  // -0.2025
    motion.step();
    EXPECT_EQ(motion.phase(), Phase::RestingIn);
    motion.doubleTap();
    EXPECT_EQ(motion.phase(), Phase::FlyingOut);
    stepTimes(motion, 12);
    EXPECT_EQ(motion.phase(), Phase::RestingOut);
}

TEST(CylinderSideMotionTest, aFactorOfOneGoesOutAndTheNextFrameTakesBackWhatGoesTooFar) {
    CylinderSideMotion motion;
    motion.step();
    for (int i = 0; i < 1000; ++i) motion.pinch(2.0f);
    motion.step();
    EXPECT_EQ(motion._eyeZ, 1.15f);
    motion.pinch(1.0f);
    motion.step();
    EXPECT_NEAR(motion._eyeZ, 1.15 + 0.03375, 1e-6);
    for (int i = 0; i < 1000; ++i) motion.pinch(0.0f);
    motion.step();
    EXPECT_EQ(motion._eyeZ, 2.0f);
}

TEST(CylinderSideMotionTest, turnsByDragFlingAndItself) {
    CylinderSideMotion motion;
    motion.step();
    const auto turn = [&motion](auto&& gesture) {
        const float before = motion._ptZm;
        gesture();
        motion.step();
        return turned(before, motion._ptZm);
    };
    EXPECT_NEAR(turn([&] { motion.drag(100, 300); }), -0.45, 1e-6);
    EXPECT_NEAR(turn([&] { motion.drag(300, 100); }), 0.45, 1e-6);
    EXPECT_NEAR(turn([&] { motion.fling(1000); }), -0.12375, 1e-6);
    motion.setAutoRotate(true, 50.0f);
    EXPECT_NEAR(turn([] {}), 0.0021375, 1e-6) << "at one speed";
    EXPECT_NEAR(turn([] {}), 0.0021375, 1e-6);
    const struct {
        const char* name;
        void (*gesture)(CylinderSideMotion&);
    } stops[] = {
        {"touch", [](CylinderSideMotion& m) { m.touch(); }},
        {"drag", [](CylinderSideMotion& m) { m.drag(5, 5); }},
        {"pinch", [](CylinderSideMotion& m) { m.pinch(2); }},
        {"fling", [](CylinderSideMotion& m) { m.fling(0); }},
    };
    for (const auto& stop : stops) {
        motion.setAutoRotate(true, 1.0f);
        EXPECT_EQ(turn([&] { stop.gesture(motion); }), 0.0) << stop.name;
    }
}

TEST(CylinderSideMotionTest, staysFiniteAndExactAfterAnyNumberOfTurns) {
    CylinderSideMotion motion;
    for (int i = 0; i < 100; ++i) motion.drag(-huge, huge);
    motion.fling(huge);
    motion.step();
    ASSERT_TRUE(std::isfinite(motion._ptZm));
    const float wild = motion._ptZm;
    motion.drag(0, 400);
    motion.step();
    EXPECT_NEAR(turned(wild, motion._ptZm), -0.9, 1e-3);
    motion.setAutoRotate(true, 1.0f);
    const float before = motion._ptZm;
    stepTimes(motion, 100);
    EXPECT_NEAR(turned(before, motion._ptZm), 0.21375, 0.01);
}

}  // namespace
}  // namespace zet::ZETShow
