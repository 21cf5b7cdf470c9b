#include <limits>

#include "views/panesgl.h"

namespace zet::test {
namespace {

constexpr SceneBackdrop nothing{0, 0}, halo{1, 1};

TEST_F(PanesGl, everyViewOutlivesAbsurdGesturesAndLeavesNothingOn) {
    constexpr float most = std::numeric_limits<float>::max();
    start(300, 250);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    for (const auto& [mode, name, mounting, part] : renderModes) {
        SCOPED_TRACE(name);
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
        EXPECT_TRUE(mode == RENDER_MODE_WALL_THREE || mode == RENDER_MODE_WALL_ONE || mode == RENDER_MODE_WALL_180 ||
                    moved > 100)
            << moved << "; the others stand still, or from far";
        bus.setConfig(DCFG_SCENE_BACKDROP, &halo);
        const bool isSolid = mode == RENDER_MODE_DRUM || mode == RENDER_MODE_BOWL;
        // An attribute left enabled would make the next view read this one's memory.
        std::atomic<int> leftOn = 0;
        const SwapHook hook([&leftOn, isSolid] {
            GLint attributes = 0;
            glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &attributes);
            for (GLuint i = 0; i < static_cast<GLuint>(attributes); ++i) {
                GLint enabled = 0, buffer = 0;
                glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
                glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &buffer);
                leftOn += enabled && buffer == 0;
            }
            leftOn += (glIsEnabled(GL_DEPTH_TEST) != isSolid) + glIsEnabled(GL_BLEND);
            leftOn += glGetError() != GL_NO_ERROR;
        });
        redraw();
        EXPECT_EQ(leftOn, 0);
    }
}

struct MultiViewGl : PanesGl {
    // Pan in degrees and tilt in tens of them, from the pane's rest.
    void comparePane(const Picture& picture, const Rect& rect, double sector, double pan, double tilt,
                     const std::string& what) {
        const double k = 1 - tilt * 10 / 55.0705986;
        const DomeCamera camera{2.0, 1.5, -55.0705986 * k, 2.2072 * k, 1.0399932 * k, sector + pan};
        compare(picture, rect, what, [&camera](double x, double y) {
            return domeColor(camera, x, y, [](const DomeAngles& place) {
                return colorAt(0.998 * (1 - 0.2 * place.b / halfTurn) * (1 - place.b / 90), place.a);
            });
        });
    }
};

TEST_F(MultiViewGl, eachPaneShowsItsSectorAndMovesAlone) {
    startView(RENDER_MODE_FOUR_PANE, 600, 480);
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

// A window of 600 by 501 with a map (or overview) and a detail side by side.
struct DetailAreaGl : PanesGl {
    // The map is brightened where the detail sees the dome.
    void comparePanes(const DomeCamera& detail, const DomeCamera& map, const std::string& what) {
        const Picture picture = shown();
        Rect detailPane = mapPane;
        detailPane.x += mapPane.width;
        compare(picture, detailPane, what + ", detail", [&](double x, double y) { return domeColor(detail, x, y); });
        int lit = 0;
        compare(picture, mapPane, what + ", map", [&](double x, double y) {
            const double inside = detail.inside(map.at(x, y));
            Wanted wanted = domeColor(map, x, y);
            if (std::fabs(inside) < 0.03) return Wanted();
            if (wanted && map.at(x, y).b > 0 && inside > 0) {
                for (double* const channel : {&wanted->r, &wanted->g, &wanted->b})
                    *channel = std::min(*channel + 76.5, 255.0);
                ++lit;
            }
            return wanted;
        });
        EXPECT_GT(lit, 300) << what;
    }
    Rect mapPane{4, 103, 296, 296};  // the detail is as large and at its right

    // The detail at rest height `travel` (0 or more) and turned by `yaw`.
    void expectMapView(double travel, double yaw, const std::string& what) {
        const double k = 1 - travel * 10 / 45.560596;
        const DomeCamera map{.eyeZ = 6.2, .half = 0};
        comparePanes({2.0, 1.0, -45.560596 * k, 1.8790853 * k, 1.3989465, 180 + yaw}, map, what);
    }
    // `nearness`: part of the most.
    void expectWallTwoView(double pitch, double yaw, double nearness, const std::string& what) {
        const DomeCamera overview{.eyeZ = 9.2, .near = 1.5, .half = 0};
        comparePanes({2.0 - 1.0486 * nearness, 1.5, -pitch, 0, 0, 0, 0, -yaw}, overview, what);
    }
};

TEST_F(DetailAreaGl, theMapIsLitWhereTheDetailLooks) {
    startView(RENDER_MODE_MAP, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    expectMapView(0, 0, "rest");
    drag(400, 300, 500, 220);
    expectMapView(0.9, 11.25, "dragged");
    const double corner = std::hypot(250.5, 150);
    for (const auto& [right, below] : {std::pair(-100.0, 0.0), {10, 100}, {100, -100}}) {  // of the map's middle
        touch(DCFG_TOUCH_DOWN, static_cast<float>(150 + right), static_cast<float>(250 + below));
        expectMapView(4.5560596 * (1 - std::hypot(right, below) * 1.8 / corner),
                      180 - std::atan2(-right, below) * halfTurn, "aimed at " + std::to_string(right));
    }
}

TEST_F(DetailAreaGl, theWallsOverviewIsLitWhereTheDetailLooks) {
    startView(RENDER_MODE_WALL_TWO, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    expectWallTwoView(0, 0, 0, "rest");
    for (int i = 0; i < 10; ++i) drag(400, 300, 496, 252);  // 2.88 degrees are two steps, and half of it
    expectWallTwoView(14.4, -28.8, std::hypot(14.4, 28.8) / 50.4 / 2, "dragged against the finger");
    touch(DCFG_TOUCH_DOWN, 299, 250);
    expectWallTwoView(0, 50.4, 1, "touched at the right end");
    touch(DCFG_TOUCH_DOWN, 150, 500);
    expectWallTwoView(50.4, 0, 1, "touched at the bottom end");
    window->resize(700, 300);
    redraw();
    mapPane = {58, 4, 292, 292};
    expectWallTwoView(50.4, 0, 1, "in a wide window");
}

struct WallThreeViewGl : PanesGl {
    void comparePanes(const Picture& picture) {
        const int w = picture.width / 2, h = picture.height / 2;
        const std::string what = std::to_string(w) + ' ';
        for (const double yaw : {-50.4, 50.4}) {
            DomeCamera camera{.eyeZ = 2 - 1.0486, .near = 1.5, .half = 0, .side = -yaw, .press = 0.97};
            camera.aspect = (w - 1) / (h - 1);  // a whole number
            compare(picture, {yaw < 0 ? 0 : w + 1, 0, w - 1, h - 1}, what + std::to_string(yaw),
                    [&camera](double x, double y) { return domeColor(camera, x, y); });
        }
        // Degrees from the lens axis: 81 to either side.
        compare(picture, {0, h + 1, 2 * w, h - 1}, what + "panorama", [](double x, double y) {
            return toColor(sceneColor(Vec{0, 0, 1}.aboutX(y * 162 / 3.3).aboutY(-x * 81)));
        });
        for (int i = 0; i < 2 * w; ++i) {
            EXPECT_TRUE(near(picture.at(i, h - 1), {}, 0) && near(picture.at(i, h), {}, 0)) << i;
            EXPECT_TRUE(near(picture.at(w - 1, i % h), {}, 0) && near(picture.at(w, i % h), {}, 0)) << i;
        }
    }
};

TEST_F(WallThreeViewGl, showsLeftAndRightAndAPanorama) {
    startView(RENDER_MODE_WALL_THREE, 500, 900);
    const Picture tall = shown(frame);
    EXPECT_TRUE(near(tall.at(125, 225), {}, 0) && near(tall.at(375, 225), {}, 0)) << "clear where taller than wide";
    EXPECT_FALSE(near(tall.at(250, 675), {}, tolerance)) << "the panorama";
    window->resize(40, 10);  // too small for any pane
    redraw();
    const int wholeFrame[] = {5000, 5000, 5000, 5000};
    Frame cut = frame;
    cut.record.lensRegion = wholeFrame;
    for (const auto& [width, height] : {std::pair(800, 600), {900, 400}}) {
        window->resize(width, height);
        redraw();  // the first frame is drawn from farther away
        comparePanes(shown(height == 400 ? cut : frame));
    }
}

}  // namespace
}  // namespace zet::test
