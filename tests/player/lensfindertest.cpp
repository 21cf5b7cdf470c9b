#include "lensfinder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numbers>
#include <random>

#include "pictureplanes.h"

namespace zetplay::test {
namespace {

std::uint8_t& lumaAt(Picture& picture, int x, int y) {
    return picture.y[static_cast<std::size_t>(y * picture.yLineSize + x)];
}

/// A picture whose luma a function of the pixel gives.
template <typename LumaOf>
Picture painted(int width, int height, LumaOf lumaOf) {
    Picture picture;
    shapePicture(picture, width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            lumaAt(picture, x, y) = static_cast<std::uint8_t>(std::clamp(std::lround(lumaOf(x, y)), 0L, 255L));
    return picture;
}

/// A place about the circle's centre.
struct Polar {
    double radius;   ///< 1 on the rim
    double degrees;  ///< -180 to 180 from the right, clockwise
};

using LumaAt = double (*)(Polar place, double room, int number);

/// A square picture of the synthetic camera, laid into a dark one.
struct Scene {
    const char* what;
    int side = 480;  ///< of the square: twice the circle's radius
    int width = 520;
    int height = 520;
    int x = 260;  ///< the circle's centre
    int y = 260;
    int cutTop = 0;  ///< rows of the square that are missing
    Mount mount = Mount::ceiling;
    double noise = 0;  ///< standard deviation
    int frames = 1;
    LumaAt luma = [](Polar, double room, int) { return room; };
};

/// The camera is slow to set up, and most scenes use the same one.
Picture& squareOf(const Scene& scene) {
    static std::map<std::pair<int, Mount>, Picture> squares;
    Picture& square = squares[{scene.side, scene.mount}];
    if (square.y.empty()) openSynthetic({scene.side, scene.side, 1}, scene.mount)->next(square);
    return square;
}

Picture laid(const Scene& scene, int number) {
    Picture& square = squareOf(scene);
    std::mt19937 random(static_cast<unsigned>(number));
    std::normal_distribution<double> noise;
    const int left = scene.x - scene.side / 2;
    const int top = scene.y - scene.side / 2;
    return painted(scene.width, scene.height, [&](int x, int y) {
        const double right = x + 0.5 - scene.x;
        const double down = y + 0.5 - scene.y;
        const Polar place{std::hypot(right, down) / (scene.side / 2.0),
                          std::atan2(down, right) * 180 / std::numbers::pi};
        const bool within = x >= left && x < left + scene.side && y >= top + scene.cutTop && y < top + scene.side;
        const double luma = scene.luma(place, within ? lumaAt(square, x - left, y - top) : 0, number);
        return scene.noise > 0 ? luma + scene.noise * noise(random) : luma;
    });
}

/// A sector, `half` degrees to both sides of `middle`.
bool sector(Polar place, double middle, double half) {
    return std::abs(std::remainder(place.degrees - middle, 360)) < half;
}

TEST(LensFinder, FindsTheCircleToHalfAPercent) {
    const Scene scenes[] = {
        {.what = "touches the edges", .width = 480, .height = 480, .x = 240, .y = 240},
        {.what = "small and moved", .side = 300, .width = 1280, .height = 720, .x = 300, .y = 500},
        {.what = "large", .side = 1200, .width = 1300, .height = 1250, .x = 655, .y = 620},
        {.what = "tiny", .side = 200, .width = 210, .height = 210, .x = 104, .y = 105},
        {.what = "wall", .mount = Mount::wall},
        {.what = "overhangs all around", .width = 464, .height = 464, .x = 232, .y = 232},
        {.what = "cut above and below", .height = 288, .y = 144},
        {.what = "cut on the left", .x = 100},
        {.what = "cut at a corner", .x = 170, .y = 160},
        {.what = "cut before it reaches the edge", .cutTop = 120},
        {.what = "noise", .noise = 12, .frames = 3},
        {.what = "noise on a lighter black",
         .noise = 20,
         .frames = 4,
         .luma = [](Polar, double room, int) { return 30 + room * 0.8; }},
        {.what = "dim rim and noise",
         .noise = 3,
         .luma = [](Polar place, double room, int) { return room * (1 - 0.6 * std::pow(place.radius, 8)); }},
        {.what = "dark room, light on one side",
         .luma = [](Polar place, double room, int) { return sector(place, 20, 75) ? room : room * 0.02; }},
        {.what = "dark room, light in its middle and in two corners",
         .luma =
             [](Polar place, double room, int) {
                 const bool light = place.radius < 0.5 || sector(place, 90, 35) || sector(place, -40, 30);
                 return light ? room : 0;
             }},
        {.what = "dark room, round table in its middle and light on one side",
         .luma =
             [](Polar place, double room, int) {
                 const bool table = place.radius < 0.5;
                 return table ? 200 : sector(place, 45, 45) ? room : 0;
             }},
        {.what = "a lamp that goes around in a dark room",
         .frames = 6,
         .luma = [](Polar place, double room, int number) { return sector(place, 50 * number, 20) ? room : 0; }},
        {.what = "lettering and a flare in the surround",
         .width = 700,
         .luma =
             [](Polar place, double room, int) {
                 const bool lettering = place.radius > 1.2 && sector(place, -30, 8);
                 const bool flare = place.radius > 1 && sector(place, 100, 12);
                 return lettering ? 220 : flare ? 90 : room;
             }},
    };
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        LensFinder finder;
        for (int i = 0; i < scene.frames; ++i) finder.add(laid(scene, i));
        const auto circle = finder.find();
        if (!circle) {
            ADD_FAILURE() << "none";
            continue;
        }
        const double radius = scene.side / 2.0;
        EXPECT_NEAR(circle->x, scene.x, 0.005 * radius);
        EXPECT_NEAR(circle->y, scene.y, 0.005 * radius);
        EXPECT_NEAR(circle->radius, radius, 0.005 * radius);
    }
}

TEST(LensFinder, StartsOverWithAPictureOfAnotherSize) {
    const Scene scene{.what = ""};
    LensFinder finder;
    finder.add(painted(scene.width + 40, scene.height - 20, [](int, int) { return 255; }));
    finder.add(laid(scene, 0));
    ASSERT_TRUE(finder.find());
    EXPECT_NEAR(finder.find()->x, scene.x, 1);
}

TEST(LensFinder, SaysNoneWhereThereIsNoCircle) {
    std::mt19937 random(1);
    std::normal_distribution<double> noise;
    // Luma at a place, pixels from the middle of a picture of 480 by 360.
    const struct {
        const char* what;
        std::function<double(double x, double y)> luma;
    } flat[] = {
        {"black", [](double, double) { return 0; }},
        {"dark noise", [&](double, double) { return 20 + 8 * noise(random); }},
        {"ramp", [](double x, double) { return 120 + x / 2; }},
        {"chequers", [](double x, double y) { return (std::lround(x / 40) + std::lround(y / 40)) % 2 == 0 ? 200 : 0; }},
        {"bars above and below", [](double, double y) { return std::abs(y) < 135 ? 150 : 0; }},
        {"framed square", [](double x, double y) { return std::max(std::abs(x), std::abs(y)) < 150 ? 150 : 0; }},
        {"rounded square",
         [](double x, double y) { return std::pow(std::abs(x), 2.4) + std::pow(std::abs(y), 2.4) < 166000 ? 150 : 5; }},
        {"skyline at night", [](double x, double y) { return y > 60 * std::sin(x / 37) ? 90 : 5; }},
        {"moon", [](double x, double y) { return std::hypot(x - 60, y + 90) < 40 ? 200 : 4; }},
        {"dome on a wide house", [](double x, double y) { return y > 0 || std::hypot(x, y) < 130 ? 150 : 5; }},
        {"a bit of a rim",
         [](double x, double y) { return std::hypot(x, y) < 160 && std::abs(std::atan2(y, x)) < 0.4 ? 150 : 5; }},
        {"plate on a grey table", [](double x, double y) { return std::hypot(x, y) < 150 ? 200 : 90; }},
    };
    for (const auto& test : flat) {
        LensFinder finder;
        finder.add(painted(480, 360, [&](int x, int y) { return test.luma(x - 239.5, y - 179.5); }));
        const auto circle = finder.find();
        EXPECT_FALSE(circle) << test.what << ": " << circle->x << ", " << circle->y << ", " << circle->radius;
    }
    LensFinder small;
    EXPECT_FALSE(small.find());
    small.add(painted(12, 2, [](int, int) { return 0; }));
    EXPECT_FALSE(small.find());
}

}  // namespace
}  // namespace zetplay::test
