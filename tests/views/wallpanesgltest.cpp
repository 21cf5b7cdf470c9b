#include "views/panesgl.h"

namespace zet::test {
namespace {

// Of 600 by 501, where an overview and a detail stand side by side.
constexpr PanesGl::Rect overviewRect{4, 103, 296, 296};
constexpr PanesGl::Rect detailRect{300, 103, 296, 296};

struct WallTwoViewGl : PanesGl {
    void comparePanes(double pitch, double yaw, double shift, const std::string& what) {
        const DomeCamera detail{2.0 - shift, 1.5, -pitch, 0, 0, 0, 0, -yaw};
        const DomeCamera overview{9.2, 1.5, 0, 0, 0, 0, 0};
        const Picture picture = shown();
        compareDome(picture, detailRect, detail, what + ", detail");
        compareMap(picture, overviewRect, overview, detail, what + ", overview");
    }

    static constexpr double most = 1.0486;  // shift
};

TEST_F(WallTwoViewGl, lightsUpWhatTheDetailShows) {
    startView(8, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    comparePanes(0, 0, 0, "rest");
    touch(DCFG_TOUCH_DOWN, 299, 250);
    comparePanes(0, 50.4, most, "right end");
    touch(DCFG_TOUCH_DOWN, 150, 500);
    comparePanes(50.4, 0, most, "bottom end");
}

TEST_F(WallTwoViewGl, dragsAndFlingsMoveIt) {
    startView(8, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    shown();
    drag(100, 100, 196, 148);  // 2.88 degrees are two steps, and half of it
    comparePanes(1.44, 2.88, most * std::hypot(1.44, 2.88) / 50.4 / 2, "on the overview, with the finger");
    for (int i = 0; i < 10; ++i) drag(400, 300, 496, 252);
    comparePanes(15.84, -25.92, most * std::hypot(15.84, 25.92) / 50.4 * (1 - 15.84 / 25.92), "on the detail");
    const Fling fling{-1000, 0};
    bus.setConfig(DCFG_FLING, &fling);
    for (int i = 0; i < 3; ++i) drawOut();
    double way = 0;
    for (double v = 900; v >= 0.5; v *= 0.9) way += 0.405 * v / 1000;
    const double yaw = -25.92 - way;
    comparePanes(15.84, yaw, most * std::hypot(15.84, yaw) / 50.4 * (1 - 15.84 / -yaw), "flung");
}

struct WallThreeViewGl : PanesGl {
    void comparePanes(const Picture& picture, const std::string& what) {
        for (const double yaw : {-50.4, 50.4}) {
            const DomeCamera camera{.eyeZ = 2 - 1.0486, .near = 1.5, .half = 0, .side = -yaw, .press = 0.97};
            compareDome(picture, yaw < 0 ? leftRect : rightRect, camera, what + (yaw < 0 ? ", left" : ", right"));
        }
        compare(picture, panoramaRect, what, [](double x, double y, Color& wanted) {
            wanted = seenAt(x * 0.45 * M_PI, y * 0.9 / 3.3 * M_PI);
            return true;
        });
    }
    // In radians, from the lens axis to the right and up.
    static Color seenAt(double azimuth, double elevation) {
        const double c = std::cos(elevation);
        return toColor(sceneColor({std::sin(azimuth) * c, std::sin(elevation), std::cos(azimuth) * c}));
    }

    // Of 800 by 600.
    static constexpr Rect leftRect{0, 0, 399, 299};
    static constexpr Rect rightRect{401, 0, 399, 299};
    static constexpr Rect panoramaRect{0, 301, 800, 299};
};

TEST_F(WallThreeViewGl, showsLeftAndRightAndAPanorama) {
    startView(7, 800, 600);
    const int wholeFrame[] = {5000, 5000, 5000, 5000};
    Frame cut = frame;
    cut.record.lensRegion = wholeFrame;
    shown(frame);  // the first frame is drawn from farther away
    for (const bool isCut : {false, true}) {
        const Picture picture = shown(isCut ? cut : frame);
        comparePanes(picture, isCut ? "cut to the lens" : "planes");
        for (int i = 0; i < 800; ++i) {
            EXPECT_TRUE(near(picture.at(i, 299), {}, 0) && near(picture.at(i, 300), {}, 0)) << i;
            EXPECT_TRUE(near(picture.at(399, i % 299), {}, 0) && near(picture.at(400, i % 299), {}, 0)) << i;
        }
    }
}

TEST_F(WallThreeViewGl, tallPanesAreClearUntilTheSurfaceIsWideAgain) {
    startView(7, 500, 900);
    const Picture picture = shown(frame);
    const auto isClear = [&picture](int x, int y) { return near(picture.at(x, y), {}, 0); };
    EXPECT_TRUE(isClear(125, 225) && isClear(375, 225));
    EXPECT_TRUE(near(picture.at(250, 900 - 225), seenAt(0, 0), tolerance));
    window->resize(40, 10);  // nothing stands
    redraw();
    window->resize(800, 600);
    redraw();
    comparePanes(shown(), "wide again");
}

}  // namespace
}  // namespace zet::test
