#include "synthetic/syntheticcamera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "media/source.h"
#include "testmedia.h"

namespace zetplay::test {
namespace {

/// The name of the colour at (x, y), by the definition of full-range BT.601.
std::string colourAt(const Picture& picture, int x, int y) {
    const double luma = picture.y[static_cast<std::size_t>(y * picture.yLineSize + x)];
    const auto chroma = static_cast<std::size_t>(y / 2 * picture.uvLineSize + x / 2);
    const double cb = picture.u[chroma] - 128.0;
    const double cr = picture.v[chroma] - 128.0;
    const double red = luma + 1.402 * cr;
    const double green = luma - 0.344136 * cb - 0.714136 * cr;
    const double blue = luma + 1.772 * cb;
    const double high = std::max({red, green, blue});
    const double low = std::min({red, green, blue});
    if (high < 60) return "dark";
    if (high - low < 25) return "white";
    if (low == blue && green > 0.7 * red && red > green) return "yellow";
    return high == red ? "red" : high == green ? "green" : "blue";
}

Picture pictureOf(const SyntheticSize& size, Mount mount, int number = 0) {
    const auto camera = openSynthetic(size, mount);
    Picture picture;
    for (int i = 0; i <= number; ++i) camera->next(picture);
    return picture;
}

TEST(SyntheticCamera, showsTheRoomThroughAnEquidistantLens) {
    struct Mark {
        Mount mount;
        double x, y, z;
        const char* colour;
        const char* what;
    };
    const Mark marks[] = {
        {Mount::ceiling, 0, 0.2, 0, "red", "the needle points north"},
        {Mount::ceiling, 3.45, 3, 1.3, "blue", "north wall, 5 cm before the corner to the east"},
        {Mount::ceiling, 3.5, 2.95, 1.3, "yellow", "east wall, 5 cm behind that corner"},
        {Mount::ceiling, 3.5, 1.42, 1.7, "white", "EAST begins with an upright stroke to the left of who faces it"},
        {Mount::ceiling, 0, 3, 1.33, "dark", "face of the clock below NORTH"},
        {Mount::wall, -3.45, 2.6, 1.9, "blue", "wall ahead, 5 cm before its left corner"},
        {Mount::wall, -3.5, 2.55, 1.9, "green", "left wall behind that corner"},
        {Mount::wall, -3.5, -1.9, 1.6, "red", "the line at the camera's height, far left"},
        {Mount::wall, -3.5, -1.37, 2.4, "white", "LEFT begins with an upright stroke at its left"},
    };
    const SyntheticSize size{1200, 900};
    const Picture pictures[] = {pictureOf(size, Mount::ceiling), pictureOf(size, Mount::wall)};
    for (const Mark& mark : marks) {
        // The cameras look down from 2.98 m with north above, and north from (0, -2.38) at 1.6 m.
        const bool ceiling = mark.mount == Mount::ceiling;
        const double up = ceiling ? mark.y : mark.z - 1.6;
        const double depth = ceiling ? 2.98 - mark.z : mark.y + 2.38;
        // The angle to the axis gives the distance from the picture's centre.
        const double across = std::hypot(mark.x, up);
        const double radius = std::atan2(across, depth) / (std::numbers::pi / 2) * 450;
        const int x = static_cast<int>(std::floor(600 + radius * mark.x / across));
        const int y = static_cast<int>(std::floor(450 - radius * up / across));
        EXPECT_EQ(colourAt(pictures[ceiling ? 0 : 1], x, y), mark.colour) << mark.what << ", at " << x << ", " << y;
    }
}

TEST(SyntheticCamera, numberAndRateMakeThePicture) {
    for (const Mount mount : {Mount::ceiling, Mount::wall}) {
        const Picture first = pictureOf({242, 242, 10}, mount);
        const Picture picture = pictureOf({242, 242, 10}, mount, 10);
        EXPECT_DOUBLE_EQ(picture.seconds, 1);
        EXPECT_EQ(picture.yLineSize, 244);
        // Twice the rate, twice the number: the same moment.
        const Picture again = pictureOf({242, 242, 20}, mount, 20);
        EXPECT_TRUE(samplesOf(again) == samplesOf(picture));
        const std::size_t size = 244 * 242;
        std::size_t changed = 0;
        for (std::size_t i = 0; i < size; ++i) changed += std::abs(first.y[i] - picture.y[i]) > 8;
        EXPECT_GT(changed, size / 500);
        EXPECT_LT(changed, size / 10);
    }
}

}  // namespace
}  // namespace zetplay::test
