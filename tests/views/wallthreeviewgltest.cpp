#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "views/panesgl.h"

namespace zet::test {
namespace {

namespace fs = std::filesystem;

// Stripes along the meridians, from the top of the lens circle to its bottom: upright wherever the camera is.
Yuv stripes(const Vec& d) {
    return {static_cast<int>(std::lround(128 + 90 * std::cos(12 * std::atan2(d.x, d.z)))), 128, 128};
}

Frame stripedFrame(int side) {
    return Frame(side, side, [side](int x, int y) {
        const double right = (x + 0.5) * 2 / side - 1;
        const double above = 1 - (y + 0.5) * 2 / side;
        return stripes(lensDirection(std::hypot(right, above), std::atan2(right, above) * halfTurn));
    });
}

// What the ffmpeg tool makes of the frame: the half of an equirectangular panorama that lies before the lens.
Picture throughTool(const Frame& frame, int side) {
    std::string name = (fs::temp_directory_path() / "panoramaXXXXXX").string();
    const fs::path folder = mkdtemp(name.data());
    {
        std::ofstream in(folder / "in", std::ios::binary);
        for (int y = 0; y < frame.record.height; ++y) {
            for (int x = 0; x < frame.record.width; ++x) {
                const Color color = frame.sample((x + 0.5) / frame.record.width, (y + 0.5) / frame.record.height);
                for (const double channel : {color.r, color.g, color.b})
                    in.put(static_cast<char>(std::lround(channel)));
            }
        }
    }
    const auto size = [](int w, int h) { return std::to_string(w) + 'x' + std::to_string(h); };
    const std::string command =
        "cd '" + folder.string() + "' && ffmpeg -nostdin -v error -f rawvideo -pix_fmt rgb24 -s " +
        size(frame.record.width, frame.record.height) +
        " -i in -vf v360=input=fisheye:ih_fov=180:iv_fov=180:output=hequirect:w=" + std::to_string(side) +
        ":h=" + std::to_string(side) + " -f rawvideo -pix_fmt rgb24 out";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::ifstream stream(folder / "out", std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    fs::remove_all(folder);
    Picture picture(side, side);
    if (bytes.size() != picture.pixels.size() * 3) {
        ADD_FAILURE() << "the tool gives " << bytes.size() << " bytes";
        return picture;
    }
    const auto channel = [&bytes](std::size_t i) { return static_cast<double>(static_cast<unsigned char>(bytes[i])); };
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        picture.pixels[i] = {channel(3 * i), channel(3 * i + 1), channel(3 * i + 2)};
    return picture;
}

struct WallThreeViewGl : PanesGl {
    void compareTops(const Picture& picture, const std::string& what, Color (*colorOf)(const DomeAngles&) = evenColor) {
        for (const double yaw : {-50.4, 50.4}) {
            const DomeCamera camera{.eyeZ = 2 - 1.0486, .near = 1.5, .half = 0, .side = -yaw, .press = 0.97};
            compareDome(picture, yaw < 0 ? leftRect : rightRect, camera, what + (yaw < 0 ? ", left" : ", right"),
                        colorOf);
        }
    }
    // `expected(azimuth, elevation)` in radians, from the lens axis to the right and up.
    template <typename Expected>
    void comparePanorama(const Picture& picture, const std::string& what, const Expected& expected) {
        compare(picture, panoramaRect, what, [&expected](double x, double y, Color& wanted) {
            wanted = expected(x * 0.45 * M_PI, y * 0.9 / 3.3 * M_PI);
            return true;
        });
    }
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
    struct Case {
        const char* what;
        const Frame& shows;
    };
    for (const Case& c : {Case{"planes", frame}, Case{"cut to the lens", cut}}) {
        const Picture picture = shown(c.shows);
        compareTops(picture, c.what);
        comparePanorama(picture, c.what, seenAt);
        for (int i = 0; i < 800; ++i) {
            EXPECT_TRUE(near(picture.at(i, 299), {}, 0) && near(picture.at(i, 300), {}, 0)) << i;
            if (i >= 299) continue;
            EXPECT_TRUE(near(picture.at(399, i), {}, 0) && near(picture.at(400, i), {}, 0)) << i;
        }
    }
}

TEST_F(WallThreeViewGl, stripesAndTheToolAgree) {
    startView(7, 800, 600);
    const Frame striped = stripedFrame(1024);
    struct Case {
        const char* what;
        const Frame& shows;
    };
    for (const Case& c : {Case{"scene", frame}, Case{"stripes", striped}}) {
        const int side = 1024;
        const Picture wanted = throughTool(c.shows, side);
        comparePanorama(shown(c.shows), c.what, [&wanted](double azimuth, double elevation) {
            const auto pixel = [](double angle) { return static_cast<int>((angle / M_PI + 0.5) * side); };
            return wanted.at(pixel(azimuth), pixel(-elevation));
        });
    }
    const Picture picture = shown();
    comparePanorama(picture, "verticals", [](double azimuth, double) {
        return toColor(stripes({std::sin(azimuth), 0, std::cos(azimuth)}));
    });
    compareTops(picture, "stripes", [](const DomeAngles& place) { return toColor(stripes(evenDirection(place))); });
}

TEST_F(WallThreeViewGl, tallPanesAreClearUntilTheSurfaceIsWideAgain) {
    startView(7, 500, 900);
    Picture picture = shown(frame);
    const auto isClear = [&picture](int x, int y) { return near(picture.at(x, y), {}, 0); };
    EXPECT_TRUE(isClear(125, 225) && isClear(375, 225));
    EXPECT_TRUE(near(picture.at(250, 900 - 225), seenAt(0, 0), tolerance));
    expectNothingLeftOn();
    window->resize(40, 10);  // nothing stands
    redraw();
    window->resize(800, 600);
    redraw();
    picture = shown();
    compareTops(picture, "wide again");
    comparePanorama(picture, "wide again", seenAt);
}

TEST_F(WallThreeViewGl, hearsNoGestureAndLeavesNothingOn) {
    startView(7, 800, 600);
    shown(frame);
    const int requests = requestsOf([this] {
        drag(100, 100, 300, 300);
        bus.setConfig(DCFG_PINCH, 2.0f);
        for (const std::int64_t id : {DCFG_TOUCH_DOWN, DCFG_TOUCH_UP, DCFG_DOUBLE_TAP}) touch(id, 100, 100);
    });
    EXPECT_EQ(requests, 0);
    compareTops(shown(), "as before");
    expectNothingLeftOn();
}

}  // namespace
}  // namespace zet::test
