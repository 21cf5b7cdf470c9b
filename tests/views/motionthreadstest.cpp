// Gestures and frames at once: what a gesture changes must stay, as if no frame had come in between.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "views/cylinderspheremotion.h"
#include "views/halfspheremotion.h"
#include "views/walloneview180motion.h"

namespace zet::ZETShow {
namespace {

// `start` rests where no frame changes the numbers, and a small `gesture` leads there and back.
template <typename Motion, typename Gesture, typename... Number>
void expectNothingLost(const char* name, const Motion& start, Gesture gesture, Number... numbers) {
    Motion watched = start, alone = start;
    std::atomic<bool> done = false;
    std::thread frames([&] {
        while (!done) watched.step();
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

const auto dragOf = [](auto& motion, float way) { motion.drag(300, 300, 300 + 8 * way, 300 + 8 * way); };

TEST(Motions, loseNoGestureToAFrame) {
    CylinderSphereMotion drum(drumPose);
    drum._tilt = 30.0f;
    using Drum = CylinderSphereMotion;
    expectNothingLost("drum", drum, dragOf, &Drum::_spin, &Drum::_tilt);
    const auto pinch = [](Drum& motion, float way) { motion.pinch(1 + way / 2); };
    expectNothingLost("drum", drum, pinch, &Drum::_zoom);

    HalfSphereMotion bowl;
    for (int i = 0; i < 70; ++i) bowl.step();
    bowl._travel = -1.0f;
    expectNothingLost("half sphere", bowl, dragOf, &HalfSphereMotion::_yaw, &HalfSphereMotion::_travel);

    WallOneView180Motion wall;
    wall._size.changeTo(400, 400);
    wall.step();
    wall.doubleTap(0, 0);
    for (int i = 0; i < 200; ++i) wall.step();
    wall._pitch = 0.6f;  // within a step of where the spring lets go: it runs and changes nothing
    const auto dragAside = [](WallOneView180Motion& motion, float way) { motion.drag(300, 300, 300 + 8 * way, 300); };
    expectNothingLost("wall", wall, dragAside, &WallOneView180Motion::_yaw);
}

}  // namespace
}  // namespace zet::ZETShow
