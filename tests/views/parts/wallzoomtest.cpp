#include "views/parts/wallzoom.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>

namespace zet::ZETShow {

void PrintTo(WallZoom::Phase phase, std::ostream* out) {
    constexpr const char* names[] = {"wide rest", "flying in", "close rest", "flying out"};
    *out << names[static_cast<int>(phase)];
}

namespace {

using Phase = WallZoom::Phase;

// Both views, so that each test steps both settings.
struct View {
    const char* name;
    const WallZoomSettings& settings;
    float closeBelow;   // pinched to less than this, the view rests close
    float lockedAbove;  // no turns from there on
    float yaw, pitch;   // the turns at the near end
    int framesIn;       // of a flight that moves
    float flownIn;      // where it ends: 0.05 doesn't add up in binary
    int frames;         // from the near end to the far one, and of the sweep's approach
    float farEyeZ = settings.farEyeZ;
    float nearEyeZ = settings.nearEyeZ;
};

constexpr View views[] = {
    {"one", wallOneZoom, 5.8f, 5.7f, 32, 26, 59, 3.0499935f, 60},
    {"180", wallOne180Zoom, 5.9f, 6.08f, 60, 32, 143, -0.7500063f, 144},
};

void PrintTo(const View& view, std::ostream* out) {
    *out << view.name;
}

struct WallZoomTest : testing::TestWithParam<View> {
    WallZoomTest() {
        zoom._size.changeTo(1000, 800);
        zoom.step();
    }
    void step(int frames) {
        for (int i = 0; i < frames; ++i) zoom.step();
    }
    void moveTo(float eyeZ) {
        zoom._targetEyeZ = eyeZ;
        step(1);
    }
    void turn(float yaw, float pitch) {
        zoom._yaw = yaw;
        zoom._pitch = pitch;
    }

    const View& view = GetParam();
    WallZoom zoom{view.settings};
};

INSTANTIATE_TEST_SUITE_P(Views, WallZoomTest, testing::ValuesIn(views),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(WallZoomTest, restsWideFromTheFirstFrame) {
    EXPECT_EQ(zoom.phase(), Phase::WideRest);
    EXPECT_EQ(zoom._eyeZ, view.farEyeZ);
    EXPECT_EQ(zoom._yawLimit, 0.0f);
    EXPECT_EQ(zoom._pitchLimit, 0.0f);
    zoom.drag(100, 100, 300, 300);
    step(1);
    EXPECT_EQ(zoom._yaw, 0.0f);
    EXPECT_EQ(zoom._pitch, 0.0f);
}

TEST_P(WallZoomTest, fliesIn) {
    zoom.doubleTap();
    for (int frame = 0; frame < view.framesIn; ++frame) {
        EXPECT_EQ(zoom.phase(), Phase::FlyingIn) << frame;
        step(1);
        if (!view.settings.tapRecallsFlight) zoom.doubleTap();  // isn't heard
    }
    EXPECT_NEAR(zoom._eyeZ, view.flownIn, 1e-7) << "in 32 bits";
    step(1);
    EXPECT_EQ(zoom.phase(), Phase::CloseRest);
    step(3);
    EXPECT_NEAR(zoom._eyeZ, view.flownIn, 1e-7);
    EXPECT_EQ(zoom.phase(), Phase::CloseRest);
}

TEST_P(WallZoomTest, fliesOutAndTurnsBackOnTheWay) {
    moveTo(view.nearEyeZ);
    turn(view.yaw, -view.pitch);
    step(1);
    ASSERT_EQ(zoom._yaw, view.yaw);
    ASSERT_EQ(zoom._pitch, -view.pitch);
    zoom.doubleTap();
    EXPECT_EQ(zoom.phase(), Phase::FlyingOut);
    step(1);
    EXPECT_EQ(zoom._eyeZ, view.nearEyeZ) << "the first frame only takes note";
    EXPECT_EQ(zoom._yaw, view.yaw);

    step(1);
    EXPECT_LT(zoom._yaw, view.yaw * (1 - 0.05f / (view.farEyeZ - view.nearEyeZ))) << "the limits shrink faster";
    zoom.doubleTap();  // isn't heard
    step(view.frames / 2);
    EXPECT_EQ(zoom._yaw, zoom._yawLimit);
    EXPECT_EQ(zoom._pitch, -zoom._pitchLimit);
    step(view.frames - view.frames / 2 - 2);
    EXPECT_LT(zoom._eyeZ, view.farEyeZ - 0.04f);
    step(1);
    EXPECT_EQ(zoom._eyeZ, view.farEyeZ);
    EXPECT_EQ(zoom._yaw, 0.0f);
    EXPECT_EQ(zoom._pitch, 0.0f);
    EXPECT_EQ(zoom.phase(), Phase::FlyingOut);
    step(1);
    EXPECT_EQ(zoom.phase(), Phase::WideRest);
}

TEST_P(WallZoomTest, smallTurnsGoEvenlyOnAFlightOut) {
    moveTo(view.nearEyeZ);
    turn(1, -2);
    step(1);
    zoom.doubleTap();
    step(1 + view.frames / 2);
    EXPECT_NEAR(zoom._yaw, 0.5, 1e-4);
    EXPECT_NEAR(zoom._pitch, -1.0, 1e-4);
    zoom.drag(500, 500, 540, 500);
    step(view.frames / 2 + 1);
    EXPECT_EQ(zoom.phase(), Phase::WideRest) << "also when a finger turns the view on the way";
}

TEST_P(WallZoomTest, pinchesCrossBetweenTheRests) {
    struct Case {
        const char* what;
        float eyeZ;
        Phase phase;
    };
    const Case cases[] = {
        {"a little nearer", view.closeBelow + 0.001f, Phase::WideRest},
        {"across", view.closeBelow - 0.001f, Phase::CloseRest},
        {"on", view.nearEyeZ + 0.5f, Phase::CloseRest},
        {"back across", view.closeBelow + 0.001f, Phase::WideRest},
        {"all the way", view.nearEyeZ, Phase::CloseRest},
        {"and back", view.farEyeZ, Phase::WideRest},
    };
    for (const Case& c : cases) {
        moveTo(c.eyeZ);
        EXPECT_EQ(zoom.phase(), c.phase) << c.what;
        step(2);
        EXPECT_EQ(zoom.phase(), c.phase) << c.what << ", later";
        EXPECT_EQ(zoom._eyeZ, c.eyeZ) << c.what;
    }
}

TEST_P(WallZoomTest, ofAPinchOnlyTheSideOfOneCounts) {
    for (const float factor : {1.0001f, 50.0f}) zoom.pinch(factor);
    step(1);
    EXPECT_NEAR(zoom._eyeZ, view.farEyeZ - 2 * view.settings.pinchStep, 1e-5);
    for (const float factor : {1.0f, 0.0f, -3.0f}) zoom.pinch(factor);
    step(1);
    EXPECT_EQ(zoom._eyeZ, view.farEyeZ) << "no further";
    for (int i = 0; i < 1000; ++i) zoom.pinch(2);
    step(1);
    EXPECT_EQ(zoom._eyeZ, view.nearEyeZ);
    zoom.pinch(0.5);
    step(1);
    EXPECT_NEAR(zoom._eyeZ, view.nearEyeZ + view.settings.pinchStep, 1e-5) << "at once, with nothing to take back";
}

TEST_P(WallZoomTest, turnsAreLimitedByTheDistance) {
    for (const float part : {0.0f, 0.2f, 0.5f, 0.9f, 1.0f, 1.05f}) {
        const float eyeZ = std::min(std::lerp(view.nearEyeZ, view.lockedAbove, part), view.farEyeZ);
        moveTo(eyeZ);
        turn(1e5f, -1e5f);
        step(1);
        const double share = part < 1 ? 1 - std::sin(part * M_PI / 2) : 0;  // a quarter of a cosine, from the other end
        EXPECT_NEAR(zoom._yaw, view.yaw * share, 1e-4) << part;
        EXPECT_NEAR(zoom._pitch, -view.pitch * share, 1e-4) << part;
        EXPECT_EQ(zoom._yaw == view.yaw, part == 0.0f) << part;
        EXPECT_EQ(zoom._yaw == 0.0f, part >= 1.0f) << part;
    }
}

TEST_P(WallZoomTest, aPullBackShrinksTheTurnsInProportion) {
    const float eyeZ = view.nearEyeZ + 0.5f;
    moveTo(eyeZ);
    turn(6, -3);
    zoom.pinch(0.5);
    step(1);
    const double left = 1 - view.settings.pinchStep / (view.farEyeZ - eyeZ - view.settings.pinchStep);
    EXPECT_NEAR(zoom._yaw, 6 * left, 1e-4);
    EXPECT_NEAR(zoom._pitch, -3 * left, 1e-4);
    zoom.pinch(1.5);
    step(1);
    EXPECT_NEAR(zoom._yaw, 6 * left, 1e-4) << "and coming near leaves them";
    moveTo(view.farEyeZ);
    EXPECT_EQ(zoom._yaw, 0.0f) << "all the way at once";
    EXPECT_EQ(zoom._pitch, 0.0f);
}

TEST_P(WallZoomTest, dragsTurnWhereTheyEndOnTheSurface) {
    moveTo(view.nearEyeZ);
    struct Case {
        float x1, y1, x2, y2, yaw, pitch;
    };
    const float huge = std::numeric_limits<float>::max();
    const Case cases[] = {
        {0, 0, 100, 40, -7.5f, -3.0f}, {100, 40, 1, 1, 7.425f, 2.925f}, {900, 700, 1000, 800, -7.5f, -7.5f},
        {50, 50, 0, 40, 0, 0},         {50, 50, 40, 0, 0, 0},           {900, 700, 1001, 700, 0, 0},
        {900, 700, 900, 801, 0, 0},    {huge, 5, 5, 5, view.yaw, 0},    {5, -huge, 5, 5, 0, -view.pitch},
        {-huge, 700, huge, 750, 0, 0},
    };
    for (const Case& c : cases) {
        turn(0, 0);
        zoom.drag(c.x1, c.y1, c.x2, c.y2);
        step(1);
        EXPECT_NEAR(zoom._yaw, c.yaw, 1e-4) << c.x1 << ' ' << c.y1 << " to " << c.x2 << ' ' << c.y2;
        EXPECT_NEAR(zoom._pitch, c.pitch, 1e-4) << c.x1 << ' ' << c.y1 << " to " << c.x2 << ' ' << c.y2;
    }
}

TEST_P(WallZoomTest, flingsTurn) {
    moveTo(view.nearEyeZ);
    zoom.fling(1000);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(static_cast<float>(zoom._yaw)), 0xbecf5c2au) << "0.40500003";
    zoom.fling(9000);
    step(1);
    EXPECT_NEAR(zoom._yaw, -4.05, 1e-4);
    zoom.fling(-20000);
    step(1);
    EXPECT_NEAR(zoom._yaw, 4.05, 1e-4);
    zoom.fling(std::numeric_limits<float>::max());
    step(1);
    EXPECT_EQ(zoom._yaw, -view.yaw);
}

TEST_P(WallZoomTest, comesCloseAndSweeps) {
    zoom.setAutoRotate(true, -7.0f);
    step(view.frames - 1);
    EXPECT_GT(zoom._eyeZ, view.nearEyeZ);
    EXPECT_EQ(zoom._yaw, 0.0f);
    step(1);
    EXPECT_EQ(zoom._eyeZ, view.nearEyeZ);
    EXPECT_EQ(zoom.phase(), Phase::CloseRest);
    step(10);
    EXPECT_NEAR(zoom._yaw, -2.0, 1e-4) << "at its own speed";
    const int side = static_cast<int>(view.yaw * 5);  // frames from the middle
    int left = 0, right = 0;
    for (int frame = 11; frame < side * 4; ++frame) {
        const float before = zoom._yaw;
        step(1);
        ASSERT_LE(std::fabs(zoom._yaw), view.yaw) << frame;
        ASSERT_LT(std::fabs(zoom._yaw - before), 0.2001) << frame;
        if (left == 0 && zoom._yaw == -view.yaw) left = frame;
        if (right == 0 && zoom._yaw == view.yaw) right = frame;
    }
    EXPECT_NEAR(left, side, 1) << "0.2 degrees don't add up in binary";
    EXPECT_NEAR(right, side * 3, 3);
}

TEST_P(WallZoomTest, theSweepTakesOverFlights) {
    zoom.doubleTap();
    step(10);
    zoom.setAutoRotate(true, 1);
    step(view.frames - 10);
    EXPECT_EQ(zoom._eyeZ, view.nearEyeZ) << "on the way in";
    zoom.touch();
    zoom.doubleTap();
    step(20);
    ASSERT_TRUE(zoom._flightBusy);
    zoom.setAutoRotate(true, 1);
    step(19);
    EXPECT_EQ(zoom._eyeZ, view.nearEyeZ) << "on the way out";
    EXPECT_EQ(zoom.phase(), Phase::CloseRest);
    EXPECT_FALSE(zoom._flightBusy);
    zoom.doubleTap();
    EXPECT_EQ(zoom.phase(), Phase::FlyingOut) << "taps are heard again";
}

TEST_P(WallZoomTest, everyGestureStopsTheSweep) {
    using Gesture = void (*)(WallZoom&);
    struct Case {
        const char* what;
        Gesture gesture;
    };
    const Case cases[] = {
        {"touch", [](WallZoom& z) { z.touch(); }},
        {"pinch", [](WallZoom& z) { z.pinch(2); }},
        {"double tap", [](WallZoom& z) { z.doubleTap(); }},
        {"drag", [](WallZoom& z) { z.drag(1, 1, 2000, 1); }},
        {"fling", [](WallZoom& z) { z.fling(1); }},
        {"the setting", [](WallZoom& z) { z.setAutoRotate(false, 1); }},
    };
    for (const Case& c : cases) {
        WallZoom fresh(view.settings);
        fresh.setAutoRotate(true, 1);
        c.gesture(fresh);
        EXPECT_FALSE(fresh._autoRotate) << c.what;
        EXPECT_EQ(fresh._targetEyeZ, view.farEyeZ) << c.what << " before the first layout";
        EXPECT_FALSE(fresh._wantClose) << c.what << " before the first layout";
        EXPECT_EQ(fresh._yaw, 0.0f) << c.what << " before the first layout";
    }
    zoom.setAutoRotate(true, 1);
    step(view.frames + 5);
    zoom.touch();
    step(10);
    EXPECT_NEAR(zoom._yaw, -1.0, 1e-4) << "and leaves the view where it stands";
    EXPECT_EQ(zoom.phase(), Phase::CloseRest);
}

TEST(WallOne180Zoom, tapsDuringAFlightInCallItBackWhileFar) {
    struct Case {
        int tapAfter, framesIn;  // 0 for never
        float eyeZ;
    };
    for (const Case& c : {Case{1, 0, 6.35f}, Case{9, 0, 5.95f}, Case{11, 144, 5.85f}, Case{28, 144, 5.0f}}) {
        WallZoom zoom(wallOne180Zoom);
        zoom._size.changeTo(1000, 800);
        zoom.step();
        zoom.doubleTap();
        for (int i = 0; i < c.tapAfter; ++i) zoom.step();
        zoom.doubleTap();
        zoom.step();
        EXPECT_NEAR(zoom._eyeZ, c.eyeZ, 1e-5) << c.tapAfter << ": a frame that moves nothing";
        EXPECT_EQ(zoom.phase(), c.framesIn != 0 ? Phase::FlyingIn : Phase::FlyingOut) << c.tapAfter;
        int frames = c.tapAfter + 1;
        for (; zoom.phase() == Phase::FlyingIn && frames < 500; ++frames) zoom.step();
        EXPECT_EQ(frames, c.framesIn != 0 ? c.framesIn + 1 : c.tapAfter + 1) << "the last one reports the end";
        if (c.framesIn == 0) {
            zoom.step();
            EXPECT_NEAR(zoom._eyeZ, c.eyeZ, 1e-5) << c.tapAfter << ": a flight out takes note first";
        }
        for (int i = 0; i < c.tapAfter + 2; ++i) zoom.step();
        EXPECT_EQ(zoom.phase(), c.framesIn != 0 ? Phase::CloseRest : Phase::WideRest) << c.tapAfter;
        EXPECT_EQ(zoom._eyeZ == 6.4f, c.framesIn == 0) << c.tapAfter;
    }
}

}  // namespace
}  // namespace zet::ZETShow
