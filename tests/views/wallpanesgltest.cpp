#include <cstdio>

#include "views/panesgl.h"

namespace zet::test {
namespace {

struct WallTwoViewGl : PanesGl {
    // `nearness`: part of the most.
    void comparePanes(double pitch, double yaw, double nearness, const std::string& what) {
        const DomeCamera detail{2.0 - 1.0486 * nearness, 1.5, -pitch, 0, 0, 0, 0, -yaw};
        const DomeCamera overview{9.2, 1.5, 0, 0, 0, 0, 0};
        const Picture picture = shown();
        compareDome(picture, {300, 103, 296, 296}, detail, what + ", detail");
        compareMap(picture, {4, 103, 296, 296}, overview, detail, what + ", overview");
    }
};

TEST_F(WallTwoViewGl, lightsUpWhatTheDetailShows) {
    startView(8, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    comparePanes(0, 0, 0, "rest");
    for (int i = 0; i < 10; ++i) drag(400, 300, 496, 252);  // 2.88 degrees are two steps, and half of it
    comparePanes(14.4, -28.8, std::hypot(14.4, 28.8) / 50.4 / 2, "dragged against the finger");
    touch(DCFG_TOUCH_DOWN, 299, 250);
    comparePanes(0, 50.4, 1, "touched at the right end");
    touch(DCFG_TOUCH_DOWN, 150, 500);
    comparePanes(50.4, 0, 1, "touched at the bottom end");
}

struct WallThreeViewGl : PanesGl {
    // `expected(azimuth, elevation)`: radians, from the lens axis to the right and up.
    template <typename Expected>
    void comparePanorama(const Picture& picture, const std::string& what, const Expected& expected) {
        compare(picture, {0, 301, 800, 299}, what, [&expected](double x, double y, Color& wanted) {
            wanted = expected(x * 0.45 * M_PI, y * 0.9 / 3.3 * M_PI);
            return true;
        });
    }
    void comparePanes(const Picture& picture, const std::string& what) {
        for (const double yaw : {-50.4, 50.4}) {
            const DomeCamera camera{.eyeZ = 2 - 1.0486, .near = 1.5, .half = 0, .side = -yaw, .press = 0.97};
            const Rect rect{yaw < 0 ? 0 : 401, 0, 399, 299};
            compareDome(picture, rect, camera, what + (yaw < 0 ? ", left" : ", right"));
        }
        comparePanorama(picture, what, [](double azimuth, double elevation) {
            const double c = std::cos(elevation);
            return toColor(sceneColor({std::sin(azimuth) * c, std::sin(elevation), std::cos(azimuth) * c}));
        });
    }
};

TEST_F(WallThreeViewGl, showsLeftAndRightAndAPanorama) {
    startView(7, 500, 900);
    const Picture tall = shown(frame);
    EXPECT_TRUE(near(tall.at(125, 225), {}, 0) && near(tall.at(375, 225), {}, 0)) << "clear where taller than wide";
    EXPECT_FALSE(near(tall.at(250, 675), {}, tolerance)) << "the panorama";
    window->resize(40, 10);  // nothing stands
    redraw();
    window->resize(800, 600);
    redraw();  // the first frame is drawn from farther away
    const int wholeFrame[] = {5000, 5000, 5000, 5000};
    Frame cut = frame;
    cut.record.lensRegion = wholeFrame;
    for (const bool isCut : {false, true}) {
        const Picture picture = shown(isCut ? cut : frame);
        comparePanes(picture, isCut ? "cut to the lens" : "planes");
        for (int i = 0; i < 800; ++i) {
            EXPECT_TRUE(near(picture.at(i, 299), {}, 0) && near(picture.at(i, 300), {}, 0)) << i;
            EXPECT_TRUE(near(picture.at(399, i % 299), {}, 0) && near(picture.at(400, i % 299), {}, 0)) << i;
        }
    }
}

TEST_F(WallThreeViewGl, agreesWithFfmpegOnThePanorama) {
    constexpr std::size_t side = 2160;  // of the half sphere before the lens: twelve pixels a degree
    const char* const command =
        "ffmpeg -nostdin -v error -f lavfi -i \"color=s=2048x2048,format=gray,geq=lum='128+60*sin(X/40)+50*sin(Y/50)',"
        "v360=fisheye:hequirect:ih_fov=180:iv_fov=180:w=2160:h=2160\" -frames:v 1 -f rawvideo -pix_fmt gray -";
    const std::unique_ptr<FILE, int (*)(FILE*)> ffmpeg(popen(command, "r"), pclose);
    std::vector<unsigned char> unrolled(side * side);
    ASSERT_EQ(std::fread(unrolled.data(), 1, unrolled.size(), ffmpeg.get()), unrolled.size());
    const Frame waves(2048, 2048, [](int x, int y) {
        return Yuv{static_cast<int>(128 + 60 * std::sin(x / 40.0) + 50 * std::sin(y / 50.0)), 128, 128};
    });

    startView(7, 800, 600);
    // Interpolation: up to 1.3 levels for half a pixel at the rim, where the filter takes the centres of the outermost
    // pixels for the circle's edge; 1.3 for 1/24 of a degree to the nearest of its pixels; 1 as it rounds down.
    tolerance = 4;
    comparePanorama(shown(waves), "waves", [&unrolled](double azimuth, double elevation) {
        const auto pixel = [](double angle) { return static_cast<std::size_t>((angle * halfTurn + 90) * 12); };
        return toColor({unrolled[pixel(-elevation) * side + pixel(azimuth)], 128, 128});
    });
}

}  // namespace
}  // namespace zet::test
