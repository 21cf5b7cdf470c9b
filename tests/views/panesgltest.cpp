#include <limits>

#include "views/panesgl.h"

namespace zet::test {
namespace {

constexpr SceneBackdrop nothing{0, 0}, halo{1, 1};

TEST_F(PanesGl, everyViewOutlivesAbsurdGesturesAndLeavesNothingOn) {
    constexpr float most = std::numeric_limits<float>::max();
    start(300, 250);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    for (const int mode : {0, 5, 2, 6, 3, 4, 7, 8, 1}) {
        SCOPED_TRACE(mode);
        bus.setConfig(DCFG_RENDER_MODE, mode);
        bus.setConfig(DCFG_SCENE_BACKDROP, &nothing);
        for (const float value : {NAN, INFINITY, -INFINITY, most, -most}) {
            const AutoRotate turning{1, value};
            const Fling fling{value, value};
            bus.setConfig(DCFG_AUTO_ROTATE, &turning);
            drag(value, -value, 140, 120);
            for (const float x : {75.0f, 140.0f, 150.0f}) {  // the centres of the left half and of the surface
                touch(DCFG_TOUCH_DOWN, x, 125);
                drag(x, 125, value, value);
                touch(DCFG_DOUBLE_TAP, x, 125);
            }
            for (const float factor : {value, 2.0f}) bus.setConfig(DCFG_PINCH, factor);
            bus.setConfig(DCFG_FLING, &fling);
            redraw();
        }
        const AutoRotate still{0, 1};
        const Fling slow{1, 1};
        bus.setConfig(DCFG_AUTO_ROTATE, &still);
        bus.setConfig(DCFG_FLING, &slow);
        for (int i = 0; i < 2; ++i) drawOut();
        const Picture before = shown();
        drag(80, 60, 140, 120);  // away from the ends to which the last gestures led
        const Picture after = shown();
        int lit = 0, moved = 0;
        for (std::size_t i = 0; i < before.pixels.size(); ++i) {
            lit += !near(before.pixels[i], {}, 10);
            moved += !near(before.pixels[i], after.pixels[i], 3);
        }
        EXPECT_GT(lit, 300 * 250 / 4);
        EXPECT_TRUE(mode == 7 || moved > 100) << moved << "; view 7 stands still";
        bus.setConfig(DCFG_SCENE_BACKDROP, &halo);
        expectNothingLeftOn(mode == 5 || mode == 6);
    }
}

struct MultiViewGl : PanesGl {
    // Pan in degrees and tilt in tens of them, from the pane's rest.
    void comparePane(const Picture& picture, const Rect& rect, double sector, double pan, double tilt,
                     const std::string& what) {
        const double k = 1 - tilt * 10 / 55.0705986;
        const DomeCamera camera{2.0, 1.5, -55.0705986 * k, 2.2072 * k, 1.0399932 * k, sector + pan};
        compareDome(picture, rect, camera, what, [](const DomeAngles& place) {
            return colorAt(0.998 * (1 - 0.2 * place.b / halfTurn) * (1 - place.b / 90), place.a);
        });
    }
};

TEST_F(MultiViewGl, eachPaneShowsItsSectorAndMovesAlone) {
    startView(3, 600, 480);
    const Picture rest = shown(frame);
    comparePane(rest, {0, 0, 300, 240}, 270, 0, 0, "top left, the right of the circle");
    comparePane(rest, {300, 0, 300, 240}, 0, 0, 0, "top right, the top");
    comparePane(rest, {0, 240, 300, 240}, 180, 0, 0, "bottom left, the bottom");
    comparePane(rest, {300, 240, 300, 240}, 90, 0, 0, "bottom right, the left");
    drag(400, 100, 480, 100);  // the picture follows the finger
    drag(100, 400, 100, 300);
    drag(100, 100, 100, -5);  // ends outside
    const Picture grid = shown();
    comparePane(grid, {300, 0, 300, 240}, 0, 18, 0, "turned");
    comparePane(grid, {0, 240, 300, 240}, 180, 0, 2.25, "tilted");
    comparePane(grid, {0, 0, 300, 240}, 270, 0, 0, "left alone");

    touch(DCFG_DOUBLE_TAP, 500, 100);
    drag(100, 400, 60, 400);
    comparePane(shown(), {0, 0, 600, 480}, 0, 13.5, 0, "enlarged");
    touch(DCFG_DOUBLE_TAP, 1, 1);
    comparePane(shown(), {300, 0, 300, 240}, 0, 13.5, 0, "back in the grid");
}

// Of 600 by 501, where a map and a detail stand side by side.
constexpr PanesGl::Rect mapRect{4, 103, 296, 296};
constexpr PanesGl::Rect detailRect{300, 103, 296, 296};

struct MultiViewMapGl : PanesGl {
    // The detail at rest height `travel` (0 or more) and turned by `yaw`, and the map with its light.
    void comparePanes(const Picture& picture, double travel, double yaw, const std::string& what) {
        const double k = 1 - travel * 10 / 45.560596;
        const DomeCamera detail{2.0, 1.0, -45.560596 * k, 1.8790853 * k, 1.3989465, 180 + yaw};
        const DomeCamera map{6.2, 1.0, 0, 0, 0, 0, 0};
        compareDome(picture, detailRect, detail, what + ", detail");
        compareMap(picture, mapRect, map, detail, what + ", map");
    }
};

TEST_F(MultiViewMapGl, lightsUpWhatTheDetailShows) {
    startView(4, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    comparePanes(shown(), 0, 0, "rest");
    drag(400, 300, 500, 220);
    comparePanes(shown(), 0.9, 11.25, "dragged");
    const double corner = std::hypot(250.5, 150);
    for (const auto& [right, below] : {std::pair(-100.0, 0.0), {10, 100}, {100, -100}}) {  // of the map's middle
        touch(DCFG_TOUCH_DOWN, static_cast<float>(150 + right), static_cast<float>(250 + below));
        comparePanes(shown(), 4.5560596 * (1 - std::hypot(right, below) * 1.8 / corner),
                     180 - std::atan2(-right, below) * halfTurn, "aimed at " + std::to_string(right));
    }
}

}  // namespace
}  // namespace zet::test
