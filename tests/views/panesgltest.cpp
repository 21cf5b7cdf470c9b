// The views that stand in panes, pixel by pixel against rays that the test casts itself through a scene of its own.

#include "support/displaytest.h"
#include "views/lenspicture.h"

namespace zet::test {
namespace {

constexpr double tolerance = 4;  // of 255: 8-bit planes, half the chroma, and cells of 2.7 degrees for a round dome
constexpr int stride = 3;        // of the pixels that are looked at

struct Rect {
    int x, y, width, height;  // from the top left corner
};

// The colour of the scene at a picture radius and the dome's angle clockwise from the top.
Color colorAt(double radius, double azimuth) {
    return toColor(sceneColor(lensDirection(radius, azimuth)));
}

struct PanesGl : DisplayTest {
    void startView(int mode, int width, int height) {
        bus.setConfig(DCFG_RENDER_MODE, mode);
        start(width, height);
    }
    void drag(float x1, float y1, float x2, float y2) {
        const DragPoints points{x1, y1, x2, y2};
        bus.setConfig(DCFG_DRAG, &points);
    }
    void touch(std::int64_t id, float x, float y) {
        const TouchPoint point{x, y};
        bus.setConfig(id, &point);
    }

    // Compares a pane with `expected(x, y)`, pane units; nothing where that gives false.
    template <typename Expected>
    void compare(const Picture& picture, const Rect& rect, const std::string& what, const Expected& expected) {
        int looked = 0;
        for (int j = stride; j < rect.height - stride; j += stride) {
            for (int i = stride; i < rect.width - stride; i += stride) {
                Color wanted;
                if (!expected((2 * i + 1.0) / rect.width - 1, 1 - (2 * j + 1.0) / rect.height, wanted)) continue;
                const Color& seen = picture.at(rect.x + i, rect.y + j);
                ++looked;
                ASSERT_TRUE(near(seen, wanted, tolerance)) << what << " at " << i << ' ' << j << seen << wanted;
            }
        }
        EXPECT_GT(looked, rect.width * rect.height / (stride * stride) / 2) << what;
    }

    const Frame frame = lensFrame(512);
};

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

TEST_F(MultiViewGl, eachPaneShowsItsSector) {
    startView(3, 600, 480);
    const Picture rest = shown(frame);
    comparePane(rest, {0, 0, 300, 240}, 270, 0, 0, "top left, the right of the circle");
    comparePane(rest, {300, 0, 300, 240}, 0, 0, 0, "top right, the top");
    comparePane(rest, {0, 240, 300, 240}, 180, 0, 0, "bottom left, the bottom");
    comparePane(rest, {300, 240, 300, 240}, 90, 0, 0, "bottom right, the left");
}

TEST_F(MultiViewGl, gesturesMoveOnePane) {
    startView(3, 600, 480);
    shown(frame);
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

struct MultiViewMapGl : PanesGl {
    // The detail at rest height `travel` (0 or more) and turned by `yaw`, and the map with its light.
    void comparePanes(const Picture& picture, double travel, double yaw, const std::string& what) {
        const double k = 1 - travel * 10 / 45.560596;
        const DomeCamera detail{2.0, 1.0, -45.560596 * k, 1.8790853 * k, 1.3989465, 180 + yaw};
        const DomeCamera map{6.2, 1.0, 0, 0, 0, 0, 0};
        int lit = 0;
        compare(picture, detailRect, what + ", detail", [&detail](double x, double y, Color& wanted) {
            const DomeAngles place = detail.at(x, y);
            if (std::fabs(place.b) < 1 || place.b > 86) return false;
            wanted = place.b > 0 ? mapColor(place) : Color{};
            return true;
        });
        compare(picture, mapRect, what + ", map", [&](double x, double y, Color& wanted) {
            const DomeAngles place = map.at(x, y);
            if (std::fabs(place.b) < 1) return false;
            const double inside = detail.inside(place);
            if (std::fabs(inside) < 0.03) return false;
            wanted = place.b > 0 ? mapColor(place) : Color{};
            if (place.b > 0 && inside > 0) {
                for (double* const channel : {&wanted.r, &wanted.g, &wanted.b})
                    *channel = std::min(*channel + 76.5, 255.0);
                ++lit;
            }
            return true;
        });
        EXPECT_GT(lit, 300) << what;
    }

    static Color mapColor(const DomeAngles& place) { return colorAt(0.998 * (1 - place.b / 90), place.a + 180); }

    static constexpr Rect mapRect{4, 103, 296, 296};
    static constexpr Rect detailRect{300, 103, 296, 296};
};

TEST_F(MultiViewMapGl, lightsUpWhatTheDetailShows) {
    startView(4, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    comparePanes(shown(), 0, 0, "rest");
    drag(400, 300, 500, 220);
    comparePanes(shown(), 0.9, 11.25, "dragged");
    touch(DCFG_TOUCH_DOWN, 50, 250);  // the left of the map; H / 2 is 250
    const double corner = std::sqrt(501 * 501 / 4 + 600 * 600 / 16);
    comparePanes(shown(), 4.5560596 * (1 - 100 * 1.8 / corner), 90, "aimed left");
    touch(DCFG_TOUCH_DOWN, 160, 350);
    comparePanes(shown(), 4.5560596 * (1 - std::hypot(10, 100) * 1.8 / corner), 270 + std::atan(100.0 / -10) * halfTurn,
                 "aimed down");
}

}  // namespace
}  // namespace zet::test
