#include "views/panesgl.h"

namespace zet::test {
namespace {

TEST_F(PanesGl, everyViewLeavesNothingOn) {
    start(600, 501);
    const SceneBackdrop halo{1, 1};
    bus.setConfig(DCFG_SCENE_BACKDROP, &halo);
    for (const int mode : {0, 5, 2, 6, 3, 4, 7, 8, 1, 0}) {
        SCOPED_TRACE(mode);
        bus.setConfig(DCFG_RENDER_MODE, mode);
        shown(frame);
        expectNothingLeftOn(mode == 5 || mode == 6);
    }
}

struct MultiViewGl : PanesGl {
    // Pan in degrees and tilt in tens of them, from the pane's rest.
    void comparePane(const Picture& picture, const Rect& rect, double sector, double pan, double tilt,
                     const std::string& what) {
        const double k = 1 - tilt * 10 / 55.0705986;
        const DomeCamera camera{2.0, 1.5, -55.0705986 * k, 2.2072 * k, 1.0399932 * k, sector + pan};
        compare(picture, rect, what, [&camera](double x, double y, Color& wanted) {
            const DomeAngles place = camera.at(x, y);
            if (std::fabs(place.b) < 0.7 || place.b > 86) return false;  // the rim's edge; narrow cells at the pole
            const double radius = 0.998 * (1 - 0.2 * place.b / halfTurn) * (1 - place.b / 90);
            wanted = place.b > 0 ? colorAt(radius, place.a) : Color{};
            return true;
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
    struct Spot {
        float x, y;
    };
    for (const Spot& spot : {Spot{50, 250}, Spot{160, 350}, Spot{250, 150}}) {
        touch(DCFG_TOUCH_DOWN, spot.x, spot.y);
        const double right = spot.x - 150, below = spot.y - 250;  // of the map's middle
        comparePanes(shown(), 4.5560596 * (1 - std::hypot(right, below) * 1.8 / corner),
                     180 - std::atan2(-right, below) * halfTurn, "aimed at " + std::to_string(spot.x));
    }
}

}  // namespace
}  // namespace zet::test
