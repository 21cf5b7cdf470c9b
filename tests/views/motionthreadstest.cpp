// A finger and the frames at once: what a gesture changes stays, as if no frame had come in between.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "views/cylindersidemotion.h"
#include "views/cylinderspheremotion.h"
#include "views/halfspheremotion.h"
#include "views/multiviewmapmotion.h"
#include "views/multiviewmotion.h"
#include "views/walloneview180motion.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {
namespace {

// `start` rests where no frame changes the numbers, and a small `gesture` leads there and back.
template <typename Motion, typename Step, typename Gesture, typename... Number>
void expectNothingLost(const char* name, const Motion& start, Step step, Gesture gesture, Number... numbers) {
    Motion watched = start, alone = start;
    std::atomic<bool> done = false;
    std::thread frames([&] {
        while (!done) step(watched);
    });
    int lost = 0;
    for (int i = 0; i < 50000 && lost == 0; ++i) {
        for (Motion* const motion : {&watched, &alone}) gesture(*motion, i % 2 ? 1.0f : -1.0f);
        const auto same = [&](auto number) {
            return static_cast<float>(std::invoke(number, watched)) == static_cast<float>(std::invoke(number, alone));
        };
        lost += !(same(numbers) && ...);
    }
    done = true;
    frames.join();
    EXPECT_EQ(lost, 0) << name;
}

const auto stepOf = [](auto& motion) { motion.step(); };
const auto dragOf = [](auto& motion, float way) { motion.drag(300, 300, 300 + 8 * way, 300 + 8 * way); };
const auto pinchOf = [](auto& motion, float way) { motion.pinch(1 + way / 2); };

TEST(Motions, loseNoGestureToAFrame) {
    CylinderSideMotion strip;
    strip.step();
    strip._zoom = -0.4f;
    strip.step();
    expectNothingLost("strip", strip, stepOf, pinchOf, &CylinderSideMotion::_zoom);

    CylinderSphereMotion drum(drumPose);
    drum._tilt = 30.0f;
    using Drum = CylinderSphereMotion;
    expectNothingLost("drum", drum, stepOf, dragOf, &Drum::_spin, &Drum::_tilt);
    expectNothingLost("drum", drum, stepOf, pinchOf, &Drum::_zoom);

    HalfSphereMotion bowl;
    for (int i = 0; i < 70; ++i) bowl.step();
    bowl._travel = -1.0f;
    expectNothingLost("half sphere, far", bowl, stepOf, dragOf, &HalfSphereMotion::_yaw, &HalfSphereMotion::_travel);
    bowl._viewTarget = bowl._viewAt = 1;
    bowl._travel = 2.0f;
    expectNothingLost("half sphere, near", bowl, stepOf, dragOf, &HalfSphereMotion::_travel);

    MultiViewMapMotion map;
    map._travel = 2.0f;
    expectNothingLost("map", map, stepOf, dragOf, &MultiViewMapMotion::_travel);

    MultiViewMotion panes;
    panes._size.changeTo(400, 400);
    panes._pan[3] = 180.0f;
    panes._tilt[3] = 2.0f;
    const auto drawn = [](MultiViewMotion& motion) {
        MatrixState matrices;
        motion.updatePaneCamera(3, matrices);
    };
    const auto panOf3 = [](const MultiViewMotion& motion) { return static_cast<float>(motion._pan[3]); };
    const auto tiltOf3 = [](const MultiViewMotion& motion) { return static_cast<float>(motion._tilt[3]); };
    expectNothingLost("panes", panes, drawn, dragOf, panOf3, tiltOf3);

    WallTwoViewMotion two;
    const auto shown = [](WallTwoViewMotion& motion) {
        MatrixState matrices;
        motion.updateDetailCamera(matrices);
    };
    expectNothingLost("wall, two panes", two, shown, dragOf, &WallTwoViewMotion::_pitch, &WallTwoViewMotion::_yaw);

    WallOneView180Motion wall;
    wall._size.changeTo(400, 400);
    wall.step();
    wall.doubleTap(0, 0);
    for (int i = 0; i < 200; ++i) wall.step();
    wall._pitch = 0.6f;  // within a step of where the spring lets go: it works and changes nothing
    const auto dragAside = [](auto& motion, float way) { motion.drag(300, 300, 300 + 8 * way, 300); };
    expectNothingLost("wall, one pane over 180 degrees", wall, stepOf, dragAside, &WallOneView180Motion::_yaw);
}

}  // namespace
}  // namespace zet::ZETShow
