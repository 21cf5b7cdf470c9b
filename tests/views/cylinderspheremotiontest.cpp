#include "views/cylinderspheremotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zet::ZETShow {
namespace {

constexpr float huge = std::numeric_limits<float>::max();

struct ShapeCase {
    const char* name;
    const CylinderSpherePose& pose;
    double eyeZ, tiltMin, tiltMax, shownAtRest, liftAtMin, liftAtMax, approach;
};

const ShapeCase shapes[] = {
    {"drum", drumPose, 22.2, -1.043, 58.123, -118.307, 0.158, -0.1536, 0.0},
    {"bowl", bowlPose, 20.05, -4.32, 56.12, -126.06, 0.378, 0.0, 1.5},
};

TEST(CylinderSphereMotionTest, tiltMovesTheSceneAndTheEye) {
    for (const ShapeCase& shape : shapes) {
        const double middle = (shape.tiltMin + shape.tiltMax) / 2;
        const struct {
            const char* name;
            double tilt, shown, lift, eyeZ;
        } cases[] = {
            {"beyond the lower end", -100, shape.tiltMin, shape.liftAtMin, shape.eyeZ},
            {"half way down", (shape.tiltMin + middle) / 2, (shape.tiltMin + middle) / 2, shape.liftAtMin / 2,
             shape.eyeZ},
            {"middle", middle, middle, 0, shape.eyeZ},
            {"half way up", (shape.tiltMax + middle) / 2, (shape.tiltMax + middle) / 2, shape.liftAtMax / 2,
             shape.eyeZ - shape.approach / 2},
            {"beyond the upper end", 300, shape.tiltMax, shape.liftAtMax, shape.eyeZ - shape.approach},
            {"one turn and ten degrees", 370, 10, shape.liftAtMin * (middle - 10) / (middle - shape.tiltMin),
             shape.eyeZ},
            {"not quite one turn back", -350, shape.tiltMin, shape.liftAtMin, shape.eyeZ},
        };
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << shape.name << ", " << c.name);
            CylinderSphereMotion motion(shape.pose);
            motion.drag(0, static_cast<float>(c.tilt / 0.1125), 0, 0);
            motion.step();
            EXPECT_NEAR(motion._tilt, c.shown, 1e-4);
            EXPECT_NEAR(motion._shownTilt, shape.shownAtRest + c.shown, 1e-4);
            EXPECT_NEAR(motion._liftY, c.lift, 1e-5);
            EXPECT_NEAR(motion._eyeZ, c.eyeZ, 1e-5);
        }
    }
}

TEST(CylinderSphereMotionTest, pinchesKeepTheEyeWithinOneUnitOfItsBase) {
    for (const ShapeCase& shape : shapes) {
        SCOPED_TRACE(shape.name);
        CylinderSphereMotion motion(shape.pose);
        motion.pinch(1.5f);
        motion.step();
        EXPECT_NEAR(motion._eyeZ, shape.eyeZ - 0.077175, 1e-5);
        for (int i = 0; i < 100; ++i) motion.pinch(9.0f);
        motion.step();
        EXPECT_NEAR(motion._eyeZ, shape.eyeZ - 1, 1e-5);
        for (int i = 0; i < 100; ++i) motion.pinch(1.0f);
        motion.step();
        EXPECT_NEAR(motion._eyeZ, shape.eyeZ + 1, 1e-5);
    }
}

TEST(CylinderSphereMotionTest, spinsByDragFlingAndItself) {
    CylinderSphereMotion motion(drumPose);
    motion.drag(100, 50, 300, 50);
    motion.step();
    EXPECT_NEAR(motion._shownSpin, 22.5, 1e-5);
    EXPECT_EQ(motion._tilt, 0.0f);
    motion.fling(100);
    motion.step();
    EXPECT_NEAR(motion._shownSpin, 22.5 + 0.6075001, 1e-5);
    motion.fling(-100);  // as fast, a quarter further
    motion.step();
    EXPECT_NEAR(motion._shownSpin, 22.5 + 0.6075001 - 0.75937505, 1e-5);
    const float before = motion._shownSpin;
    motion.setAutoRotate(true, 50.0f);
    motion.step();
    EXPECT_EQ(motion._shownSpin, before) << "the turn shows in the frame after it";
    motion.step();
    EXPECT_NEAR(motion._shownSpin, before - 0.039375, 1e-5) << "at one speed";
    const struct {
        const char* name;
        void (*gesture)(CylinderSphereMotion&);
    } stops[] = {
        {"touch", [](CylinderSphereMotion& m) { m.touch(); }},
        {"drag", [](CylinderSphereMotion& m) { m.drag(5, 5, 5, 5); }},
        {"pinch", [](CylinderSphereMotion& m) { m.pinch(2); }},
        {"fling", [](CylinderSphereMotion& m) { m.fling(0); }},
    };
    for (const auto& stop : stops) {
        motion.setAutoRotate(true, 1.0f);
        stop.gesture(motion);
        const float still = motion._spin;
        motion.step();
        motion.step();
        EXPECT_EQ(motion._shownSpin, still) << stop.name;
    }
}

TEST(CylinderSphereMotionTest, recoversFromGesturesOfAnySize) {
    for (const ShapeCase& shape : shapes) {
        SCOPED_TRACE(shape.name);
        CylinderSphereMotion motion(shape.pose);
        for (int i = 0; i < 100; ++i) motion.drag(-huge, -huge, huge, huge);
        motion.fling(huge);
        motion.step();
        ASSERT_LT(std::fabs(motion._shownSpin), 360.0f);
        const float spin = motion._shownSpin;
        motion.drag(0, 0, 80, 1000);
        motion.step();
        EXPECT_NEAR(std::remainder(motion._shownSpin - spin - 9.0, 360.0), 0.0, 1e-3);
        EXPECT_NEAR(motion._shownTilt, shape.shownAtRest + shape.tiltMin, 1e-4);
    }
}

}  // namespace
}  // namespace zet::ZETShow
