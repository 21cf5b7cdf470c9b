#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <tuple>

#include "views/walloneview180motion.h"

namespace zet::ZETShow {

namespace {

using enum WallZoom::Phase;
using Gesture = std::function<void(WallZoom&)>;

const Gesture none = [](WallZoom&) {};
const Gesture touch = [](WallZoom& zoom) { zoom.touchDown(1e5f, 1e5f); };
const Gesture tap = [](WallZoom& zoom) { zoom.doubleTap(0, 0); };
const Gesture sweep = [](WallZoom& zoom) { zoom.setAutoRotate(true, -7.0f); };

Gesture pinch(float factor) {
    return [=](WallZoom& zoom) { zoom.pinch(factor); };
}
Gesture drag(float x1, float y1, float x2, float y2) {
    return [=](WallZoom& zoom) { zoom.drag(x1, y1, x2, y2); };
}
// Sets what many pinches and drags may reach. Turns are limited by what was allowed at the camera's last place.
Gesture ask(float eyeZ, float yaw = 0, float pitch = 0) {
    return [=](WallZoom& zoom) { std::tie(zoom._targetEyeZ, zoom._yaw, zoom._pitch) = std::tuple(eyeZ, yaw, pitch); };
}

// A gesture, and the view's numbers some frames later.
struct Scene {
    const char* what;
    Gesture gesture;
    int frames;
    WallZoom::Phase phase;
    float eyeZ, yaw, pitch;
};

void play(WallZoom& zoom, std::initializer_list<Scene> scenes) {
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        scene.gesture(zoom);
        for (int i = 0; i < scene.frames; ++i) zoom.step();
        EXPECT_EQ(zoom.phase(), scene.phase);
        EXPECT_NEAR(zoom._eyeZ, scene.eyeZ, 5e-6);  // sums of steps in 32 bits
        EXPECT_NEAR(zoom._yaw, scene.yaw, 4e-4);
        EXPECT_NEAR(zoom._pitch, scene.pitch, 4e-4);
    }
}

// Both views, so that each test steps both settings.
struct View {
    const char* name;
    const WallZoomSettings& settings;
    float far, near, pinchStep;
    float closeBelow;   // pinched to less than this, the view rests close
    float lockedAbove;  // no turns from there on
    float yaw, pitch;   // the turns at the near end
    int framesIn;       // of a flight that moves
    float flownIn;      // where it ends: 0.05 doesn't add up in binary
    int frames;         // from the near end to the far one, and of the sweep's approach
};

struct WallZoomNumbers : testing::TestWithParam<View> {
    WallZoomNumbers() {
        zoom._size.changeTo(1000, 800);
        zoom.step();
    }
    void play(std::initializer_list<Scene> scenes) { ZETShow::play(zoom, scenes); }

    const View& view = GetParam();
    const float far = view.far, near = view.near;
    WallZoom zoom{view.settings};
};

const View views[] = {
    {"one", wallOneZoom, 6.0f, 3.0f, 0.115425f, 5.8f, 5.7f, 32, 26, 59, 3.0499935f, 60},
    {"one180", wallOne180Zoom, 6.4f, -0.8f, 0.029925f, 5.9f, 6.08f, 60, 32, 143, -0.7500063f, 144},
};
INSTANTIATE_TEST_SUITE_P(Views, WallZoomNumbers, testing::ValuesIn(views),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WallZoomNumbers, fliesBetweenTheRests) {
    const int half = view.frames / 2;
    const float middle = (far + near) / 2;
    const float lim = 1 - std::sin((middle - near) / (view.lockedAbove - near) * M_PIf / 2);
    play({{"far, turns are locked", ask(far, 9, -9), 1, wideRest, far, 0, 0},
          {"flies in", tap, view.framesIn, flyingIn, view.flownIn, 0, 0},
          {"reports the end", none, 1, closeRest, view.flownIn, 0, 0},
          {"goes the rest by hand", ask(near), 1, closeRest, near, 0, 0},
          {"turns as far as it may", ask(near, 1e5, -1e5), 1, closeRest, near, view.yaw, -view.pitch},
          {"flies out, and first takes note", tap, 1, flyingOut, near, view.yaw, -view.pitch},
          {"limits shrink by a cosine", none, half, flyingOut, middle, view.yaw * lim, -view.pitch * lim},
          {"hears no tap on the way", tap, view.frames - half, flyingOut, far, 0, 0},
          {"reports the end", none, 1, wideRest, far, 0, 0},
          {"is pinched in", ask(near), 1, closeRest, near, 0, 0},
          {"turns a little", ask(near, 1, -2), 1, closeRest, near, 1, -2},
          {"flies out evenly", tap, 1 + half, flyingOut, middle, 0.5, -1},
          {"rests, turned by a finger", drag(500, 500, 540, 500), view.frames - half + 1, wideRest, far, 0, 0}});
}

TEST_P(WallZoomNumbers, pinchesMoveAndCrossBetweenTheRests) {
    const float step = view.pinchStep, close = view.closeBelow, half = near + 0.5f;
    const float left = 1 - step / (far - half - step);
    play({{"a step in by any factor above 1", pinch(1.0001f), 1, wideRest, far - step, 0, 0},
          {"a step out by any other", pinch(-1), 1, wideRest, far, 0, 0},
          {"across", ask(close - 0.001f), 1, closeRest, close - 0.001f, 0, 0},
          {"back across", ask(close + 0.001f), 1, wideRest, close + 0.001f, 0, 0},
          {"past the near end", ask(-1e5), 1, closeRest, near, 0, 0},
          {"at once back from it", pinch(0.5), 1, closeRest, near + step, 0, 0},
          {"near", ask(half), 1, closeRest, half, 0, 0},
          {"turned", ask(half, 6, -3), 1, closeRest, half, 6, -3},
          {"pulled back, shrinks the turns", pinch(0.5), 1, closeRest, half + step, 6 * left, -3 * left},
          {"coming near leaves them", pinch(2), 1, closeRest, half, 6 * left, -3 * left}});
}

TEST_P(WallZoomNumbers, theSweepTakesOverUntilAGesture) {
    play({{"on the way in", tap, 10, flyingIn, far - 0.5f, 0, 0},
          {"comes close", sweep, view.frames - 10, closeRest, near, 0, 0},
          {"on the way out", tap, 20, flyingOut, near + 0.95f, 0, 0},
          {"comes close again", sweep, 19, closeRest, near, 0, 0},
          {"sweeps at its own speed", none, 10, closeRest, near, -2, 0},
          {"turns at the left end", ask(near, -view.yaw + 0.3f), 12, closeRest, near, -view.yaw + 2, 0},
          {"and at the right end", ask(near, view.yaw - 0.3f), 12, closeRest, near, view.yaw - 2, 0},
          {"stops where it is", touch, 10, closeRest, near, view.yaw - 2, 0},
          {"hears taps again", tap, 1, flyingOut, near, view.yaw - 2, 0}});
}

TEST_P(WallZoomNumbers, hearsATapOnTheWayIn) {
    play({{"on the way", tap, 9, flyingIn, far - 0.45f, 0, 0}});
    if (!view.settings.tapRecallsFlight) return play({{"not here", tap, 1, flyingIn, far - 0.5f, 0, 0}});
    play({{"is called back and takes note", tap, 2, flyingOut, 5.95f, 0, 0},
          {"returns", none, 10, wideRest, 6.4f, 0, 0},
          {"further on the way", tap, 11, flyingIn, 5.85f, 0, 0},
          {"loses a frame", tap, 1, flyingIn, 5.85f, 0, 0},
          {"goes on", none, 132, flyingIn, view.flownIn, 0, 0}});
}

TEST(WallOneView180Motion, springsBackInWholeStepsWhereNothingHoldsIt) {
    WallOneView180Motion motion;
    motion._size.changeTo(1000, 800);
    const auto down = [](float x, float y) { return [=](WallZoom& zoom) { zoom.touchDown(x, y); }; };
    const Gesture up = [](WallZoom& zoom) { zoom.touchUp(0, 0); };
    play(motion, {{"far", none, 1, wideRest, 6.4f, 0, 0},
                  {"near", ask(-0.8f), 1, closeRest, -0.8f, 0, 0},
                  {"the corner counts", down(1000, 800), 1, closeRest, -0.8f, 0, 0},
                  {"held", ask(-0.8f, 60, -31.9f), 20, closeRest, -0.8f, 60, -31.9f},
                  {"lifted", up, 10, closeRest, -0.8f, 57, -28.9f},
                  {"at rest", none, 150, closeRest, -0.8f, 37.2f, -0.7f},
                  {"a touch beside holds nothing", down(1001, 5), 0, closeRest, -0.8f, 37.2f, -0.7f},
                  {"to the left", ask(-0.8f, -40, 0.7f), 1, closeRest, -0.8f, -39.7f, 0.7f},
                  {"swept", sweep, 10, closeRest, -0.8f, -41.7f, 0.7f},
                  {"stopped", touch, 1, closeRest, -0.8f, -41.4f, 0.7f},
                  {"down", ask(-0.8f, 20, 10), 1, closeRest, -0.8f, 20, 9.7f}});
}

}  // namespace
}  // namespace zet::ZETShow
