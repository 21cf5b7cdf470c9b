#include "syntheticcamera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "source.h"

namespace zetplay::test {
namespace {

struct Rgb {
    double r, g, b;
};

/// The pixel at (x, y) by the definition of full-range BT.601.
Rgb rgbAt(const Picture& picture, int x, int y) {
    const double luma = picture.y[static_cast<std::size_t>(y * picture.yLineSize + x)];
    const auto chroma = static_cast<std::size_t>(y / 2 * picture.uvLineSize + x / 2);
    const double cb = picture.u[chroma] - 128.0;
    const double cr = picture.v[chroma] - 128.0;
    return {luma + 1.402 * cr, luma - 0.344136 * cb - 0.714136 * cr, luma + 1.772 * cb};
}

std::string nameOf(const Rgb& c) {
    const double high = std::max({c.r, c.g, c.b});
    const double low = std::min({c.r, c.g, c.b});
    if (high < 60) return "dark";
    if (high - low < 25) return "white";
    if (low == c.b && c.g > 0.7 * c.r && c.r > c.g) return "yellow";
    return high == c.r ? "red" : high == c.g ? "green" : "blue";
}

Picture pictureOf(const SyntheticSize& size, Mount mount, int number = 0) {
    const auto camera = openSynthetic(size, mount);
    Picture picture;
    for (int i = 0; i <= number; ++i) camera->next(picture);
    return picture;
}

struct Mark {
    double x, y, z;
    const char* colour;
    const char* what;
};

/// Compares the room's marks with where an equidistant lens shows them: the angle to the axis gives the distance from
/// the picture's centre. `depth`, `right` and `up` are the mark's coordinates in the camera's own frame.
template <typename ToCamera>
void expectMarks(const Picture& picture, const Mark* begin, const Mark* end, ToCamera toCamera) {
    const double radius = std::min(picture.width, picture.height) / 2.0;
    for (const Mark* mark = begin; mark != end; ++mark) {
        SCOPED_TRACE(mark->what);
        const auto [right, up, depth] = toCamera(*mark);
        const double across = std::hypot(right, up);
        const double r = std::atan2(across, depth) / (std::numbers::pi / 2) * radius;
        const int x = static_cast<int>(std::floor(picture.width / 2.0 + r * right / across));
        const int y = static_cast<int>(std::floor(picture.height / 2.0 - r * up / across));
        EXPECT_EQ(nameOf(rgbAt(picture, x, y)), mark->colour) << "at " << x << ", " << y;
    }
}

struct InCamera {
    double right, up, depth;
};

TEST(SyntheticCamera, CeilingPictureIsEquidistantAndLiesLikeAMap) {
    const Mark marks[] = {
        {0, 0.2, 0, "red", "the needle points north"},
        {0, -0.2, 0, "dark", "and its other half south"},
        {0.55, 0, 0, "dark", "the ring round the compass"},
        {0.46, 0, 0, "white", "within the ring"},
        {3.45, 3, 1.3, "blue", "north wall, 5 cm before the corner to the east"},
        {3.5, 2.95, 1.3, "yellow", "east wall, 5 cm behind that corner"},
        {-3.45, -3, 1.3, "red", "south wall at the other corner"},
        {-3.5, -2.95, 1.3, "green", "west wall at the other corner"},
        {2.7, 3, 2.9, "blue", "north wall under the ceiling"},
        {-0.5, 3, 0.05, "white", "skirting, 10 cm high"},
        {-0.7, 3, 0.15, "blue", "wall above the skirting"},
        {3.5, 1.42, 1.7, "white", "EAST begins with an upright stroke to the left of who faces it"},
        {3.5, -1.42, 1.7, "yellow", "and does not end with one"},
        {0, 3, 1.33, "dark", "face of the clock below NORTH"},
        {0, 3, 1.43, "blue", "wall above that clock"},
    };
    for (const SyntheticSize size : {SyntheticSize{1000, 1000}, SyntheticSize{1200, 900}}) {
        const Picture picture = pictureOf(size, Mount::ceiling);
        expectMarks(picture, std::begin(marks), std::end(marks), [](const Mark& mark) {
            return InCamera{mark.x, mark.y, 2.98 - mark.z};
        });
    }
}

TEST(SyntheticCamera, WallPictureIsEquidistantAndUpright) {
    const Mark marks[] = {
        {-3.45, 2.6, 1.9, "blue", "wall ahead, 5 cm before its left corner"},
        {-3.5, 2.55, 1.9, "green", "left wall behind that corner"},
        {3.5, 2.55, 1.9, "yellow", "right wall at the other corner"},
        {-3.5, -1.9, 1.6, "red", "the line at the camera's height, far left"},
        {-3.5, -1.9, 1.66, "green", "above that line"},
        {-3.5, -1.9, 1.54, "green", "below that line"},
        {-3.5, -1.7, 2.85, "green", "left wall, 5 cm under the ceiling"},
        {-3.45, -1.7, 2.9, "white", "ceiling, 5 cm from that wall"},
        {-3.5, 1.31, 1.8, "white", "frame of the left door"},
        {-3.5, 1.22, 1.8, "green", "wall before the left door"},
        {-3.5, -1.37, 2.4, "white", "LEFT begins with an upright stroke at its left"},
    };
    const Picture picture = pictureOf({1000, 1000}, Mount::wall);
    expectMarks(picture, std::begin(marks), std::end(marks), [](const Mark& mark) {
        return InCamera{mark.x, mark.z - 1.6, mark.y + 2.38};
    });
}

TEST(SyntheticCamera, IsBlackOutsideTheCircle) {
    for (const SyntheticSize size : {SyntheticSize{200, 200}, SyntheticSize{320, 180}, SyntheticSize{102, 300}}) {
        for (const Mount mount : {Mount::ceiling, Mount::wall}) {
            const Picture picture = pictureOf(size, mount);
            const double radius = std::min(size.width, size.height) / 2.0;
            for (int y = 0; y < size.height; ++y) {
                for (int x = 0; x < size.width; ++x) {
                    const double r = std::hypot(x + 0.5 - size.width / 2.0, y + 0.5 - size.height / 2.0);
                    const int luma = picture.y[static_cast<std::size_t>(y * picture.yLineSize + x)];
                    const bool outside = r > radius + 1;
                    const bool rim = r > radius - 4 && r < radius - 2;
                    ASSERT_FALSE((outside && luma != 0) || (rim && luma < 50)) << x << ", " << y << ": " << luma;
                }
            }
        }
    }
}

TEST(SyntheticCamera, NumberAndRateMakeThePicture) {
    for (const Mount mount : {Mount::ceiling, Mount::wall}) {
        const SyntheticSize size{242, 242, 10};
        const auto camera = openSynthetic(size, mount);
        Picture first;
        Picture picture;
        camera->next(first);
        for (int i = 1; i <= 10; ++i) camera->next(picture);
        EXPECT_EQ(picture.number, 10);
        EXPECT_DOUBLE_EQ(picture.seconds, 1);
        EXPECT_EQ(picture.yLineSize, 244);
        EXPECT_EQ(picture.uvLineSize, 122);
        // Twice the rate, twice the number: the same moment.
        const Picture again = pictureOf({242, 242, 20}, mount, 20);
        EXPECT_EQ(again.y, picture.y);
        EXPECT_EQ(again.u, picture.u);
        EXPECT_EQ(again.v, picture.v);
        std::size_t changed = 0;
        for (std::size_t i = 0; i < first.y.size(); ++i) changed += std::abs(first.y[i] - picture.y[i]) > 8;
        EXPECT_GT(changed, first.y.size() / 500);
        EXPECT_LT(changed, first.y.size() / 10);
        camera->rewind();
        camera->next(picture);
        EXPECT_EQ(picture.number, 0);
        EXPECT_EQ(picture.y, first.y);
        EXPECT_EQ(picture.v, first.v);
    }
}

}  // namespace
}  // namespace zetplay::test
