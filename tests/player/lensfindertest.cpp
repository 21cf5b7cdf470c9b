#include "media/lensfinder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "media/pictureplanes.h"

namespace zetplay::test {
namespace {

constexpr double radius = 240;  // of the synthetic camera's circle

/// Where a pixel lies, and what the synthetic camera shows there.
struct Spot {
    double x, y;    ///< from the circle's centre, pixels
    double room;    ///< luma
    double reach;   ///< from the circle's centre; 1 on the rim
    double degree;  ///< -180 to 180 from the right, clockwise

    bool in(double middle, double half) const { return std::abs(std::remainder(degree - middle, 360)) < half; }
};

struct Scene {
    const char* what;
    int width = 520;
    int height = 520;
    int x = 260;  ///< the circle's centre
    int y = 260;
    int pictures = 1;
    double (*luma)(const Spot& spot) = [](const Spot& spot) { return spot.room; };
    double noise = 0;  ///< standard deviation
};

Picture paint(const Scene& scene, int number) {
    static const Picture camera = [] {
        Picture picture;
        openSynthetic({2 * static_cast<int>(radius), 2 * static_cast<int>(radius), 1}, Mount::ceiling)->next(picture);
        return picture;
    }();
    std::mt19937 random(static_cast<unsigned>(number));
    std::normal_distribution<double> noise(0, std::max(scene.noise, 1e-9));
    PlanePool pool;
    Picture picture;
    const Planes planes = pool.shape(picture, scene.width, scene.height);
    picture.color.fullRange = 1;
    for (int y = 0; y < scene.height; ++y) {
        for (int x = 0; x < scene.width; ++x) {
            const double right = x + 0.5 - scene.x;
            const double down = y + 0.5 - scene.y;
            const double reach = std::hypot(right, down) / radius;
            const bool shown = std::max(std::abs(right), std::abs(down)) < radius;
            const auto at = static_cast<std::size_t>((y - scene.y + 240) * camera.yLineSize + x - scene.x + 240);
            const double room = shown ? camera.y[at] : 0.0;
            const Spot spot{right, down, room, reach, std::atan2(down, right) * 180 / std::numbers::pi};
            planes.y[static_cast<std::size_t>(y * planes.yLineSize + x)] =
                static_cast<std::uint8_t>(std::clamp(scene.luma(spot) + noise(random), 0.0, 255.0));
        }
    }
    return picture;
}

std::optional<LensCircle> find(const Scene& scene) {
    LensFinder finder;
    for (int i = 0; i < scene.pictures; ++i) finder.add(paint(scene, i));
    return finder.find();
}

TEST(LensFinder, findsTheCircleToHalfAPercent) {
    const auto lighterBlack = [](const Spot& spot) { return 30 + spot.room * 0.8; };
    const auto cutInside = [](const Spot& spot) { return spot.y < -120 ? 0 : spot.room; };
    const Scene scenes[] = {
        {"touches the edges", 480, 480, 240, 240},
        {"moved", 1280, 720, 300, 470},
        {"cut above and below", 520, 288, 260, 144},
        {"cut at a corner", 520, 520, 170, 160},
        {"cut before it reaches the edge", 520, 520, 260, 260, 1, cutInside},
        {"noise on a lighter black", 520, 520, 260, 260, 4, lighterBlack, 20},
    };
    for (const Scene& scene : scenes) {
        const auto circle = find(scene).value_or(LensCircle{});
        EXPECT_NEAR(std::hypot(circle.x - scene.x, circle.y - scene.y), 0, 0.005 * radius) << scene.what;
        EXPECT_NEAR(circle.radius, radius, 0.005 * radius) << scene.what;
    }
}

TEST(LensFinder, saysNoneWhereThereIsNoCircle) {
    const auto rounded = [](const Spot& at) {
        return std::pow(std::abs(at.x), 2.4) + std::pow(std::abs(at.y), 2.4) < 166000 ? 150.0 : 5;
    };
    const auto dome = [](const Spot& at) { return at.y > 0 || at.reach < 0.54 ? 150.0 : 5; };
    const auto rim = [](const Spot& at) { return at.reach < 0.67 && at.in(0, 23) ? 150.0 : 5; };
    const Scene scenes[] = {
        {"rounded square", 480, 360, 240, 180, 1, rounded},
        {"dome on a wide house", 480, 360, 240, 180, 1, dome},
        {"a bit of a rim", 480, 360, 240, 180, 1, rim},
        {"plate on a grey table", 480, 360, 240, 180, 1, [](const Spot& at) { return at.reach < 0.6 ? 200.0 : 90; }},
    };
    for (const Scene& scene : scenes) EXPECT_FALSE(find(scene)) << scene.what;
}

}  // namespace
}  // namespace zetplay::test
