#include "views/runlengthpicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "views/halopicture.h"

namespace zet::ZETShow {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes join(const Bytes& head, const Bytes& tail) {
    Bytes whole = head;
    whole.insert(whole.end(), tail.begin(), tail.end());
    return whole;
}

TEST(RunLengthPicture, UnpacksEveryTokenForm) {
    struct Case {
        const char* name;
        Bytes stream;
        Bytes bytes;
    };
    const Case cases[] = {
        {"short fills", {2, 0, 2, 0, 7, 0x84, 9, 0x82}, {7, 7, 7, 7, 9, 9}},
        {"short literals", {2, 0, 2, 0, 1, 0x05, 2, 3, 4, 5, 6, 0x01}, {1, 2, 3, 4, 5, 6}},
        {"an empty fill", {2, 0, 2, 0, 7, 0x80, 9, 0x86}, Bytes(6, 9)},
        {"medium fill", {16, 0, 16, 0, 7, 0xa1, 0x80}, Bytes(384, 7)},
        {"medium literal", join({16, 0, 16, 0, 7, 0x21, 0x80}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
        {"medium wins over long", {16, 0, 16, 0, 7, 0xe1, 0x80}, Bytes(384, 7)},
        {"long fill", {0, 1, 4, 1, 7, 0xc1, 0x02, 0x85, 7, 0xc0, 0xfe, 0x00}, Bytes(0x18600, 7)},
        {"long literal", join({16, 0, 16, 0, 7, 0x40, 0x80, 0x01}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PlanarPicture picture = unpackPicture(c.stream);
        EXPECT_EQ(picture.width, c.stream[0] + 256 * c.stream[1]);
        EXPECT_EQ(picture.height, c.stream[2] + 256 * c.stream[3]);
        EXPECT_EQ(picture.bytes, c.bytes);
    }
}

TEST(RunLengthPicture, RefusesADamagedStream) {
    const std::pair<const char*, Bytes> cases[] = {
        {"nothing", {}},
        {"half a header", {2, 0, 2}},
        {"no tokens", {2, 0, 2, 0}},
        {"an odd width", {3, 0, 2, 0, 7, 0x89}},
        {"too few bytes", {2, 0, 2, 0, 7, 0x85}},
        {"a fill too long", {2, 0, 2, 0, 7, 0x87}},
        {"the longest fill", {2, 0, 2, 0, 7, 0xdf, 0xff, 0xff}},
        {"a literal too long", {2, 0, 2, 0, 7, 0x07, 1, 2, 3, 4, 5, 6}},
        {"a literal cut short", {2, 0, 2, 0, 7, 0x06, 1, 2, 3, 4}},
        {"an empty literal", {2, 0, 2, 0, 7, 0x86, 7, 0x00}},
        {"half a word", {2, 0, 2, 0, 7, 0x86, 7}},
        {"no third byte", {2, 0, 2, 0, 7, 0xa0}},
        {"no fourth byte", {2, 0, 2, 0, 7, 0xc0, 0x06}},
    };
    for (const auto& [name, stream] : cases) {
        SCOPED_TRACE(name);
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_EQ(picture.width, 0);
        EXPECT_TRUE(picture.bytes.empty());
    }
    for (std::size_t size = 0; size < haloPicture.size(); size += 997) {
        ASSERT_EQ(unpackPicture(haloPicture.first(size)).width, 0) << size;
    }
}

// The halo, measured from the centre of its circle.
class HaloPicture : public testing::Test {
protected:
    int light(double degrees, double radius) const {
        const int x = static_cast<int>(std::lround(239 + radius * std::cos(degrees * std::numbers::pi / 180)));
        const int y = static_cast<int>(std::lround(245 + radius * std::sin(degrees * std::numbers::pi / 180)));
        return x < 0 || x >= 480 || y < 0 || y >= 480 ? 0 : picture.plane(0)[480 * y + x];
    }
    int peakRadius(double degrees) const {
        int peak = 0;
        for (int radius = 0; radius < 300; ++radius) {
            if (light(degrees, radius) > light(degrees, peak)) peak = radius;
        }
        return peak;
    }
    double share(int most) const {
        const auto* const y = picture.plane(0);
        return static_cast<double>(std::count_if(y, y + 480 * 480, [most](int value) { return value <= most; })) /
               230400;
    }

    const PlanarPicture picture = unpackPicture(haloPicture);
};

TEST_F(HaloPicture, IsAThinArcOnBlack) {
    ASSERT_EQ(picture.width, 480);
    ASSERT_EQ(picture.height, 480);
    EXPECT_NEAR(share(0), 1 / 3.0, 0.03);
    EXPECT_NEAR(share(2), 0.6, 0.03);
    EXPECT_NEAR(*std::max_element(picture.plane(0), picture.plane(1)), 87, 2);

    struct Arc {
        const char* name;
        int from;  // degrees clockwise from the right
        int to;
        double radius;
        double radiusTolerance;
        double peak;
        double peakTolerance;
    };
    const Arc arcs[] = {
        {"right and lower right", 0, 30, 185, 3, 80, 7},
        {"bottom and left", 90, 170, 185, 3, 50, 7},
        {"upper left", 195, 255, 152.5, 12.5, 12, 12},
        {"top and upper right", 285, 355, 185, 3, 62, 20},
    };
    for (const Arc& arc : arcs) {
        for (int degrees = arc.from; degrees <= arc.to; degrees += 5) {
            SCOPED_TRACE(testing::Message() << arc.name << ", " << degrees);
            const int radius = peakRadius(degrees);
            EXPECT_NEAR(radius, arc.radius, arc.radiusTolerance);
            EXPECT_NEAR(light(degrees, radius), arc.peak, arc.peakTolerance);
        }
    }
}

TEST_F(HaloPicture, RisesSlowlyAndFallsSharply) {
    for (const int degrees : {0, 15, 30, 90, 135, 165}) {
        SCOPED_TRACE(degrees);
        EXPECT_NEAR(light(degrees, 150), 10, 3);
        EXPECT_NEAR(light(degrees, 170), 27.5, 8);
        EXPECT_NEAR(light(degrees, 200), 5, 2);
        EXPECT_NEAR(light(degrees, 230), 2.5, 1.5);
    }
    for (const int degrees : {40, 45, 130}) EXPECT_NEAR(light(degrees, 285), 1, 1) << degrees;
    EXPECT_GT(light(45, 280), 0);
    EXPECT_EQ(light(40, 310), 0);
}

TEST_F(HaloPicture, IsBlueWhereItIsBright) {
    const auto brightest = std::max_element(picture.plane(0), picture.plane(1)) - picture.plane(0);
    const auto chroma = brightest / 480 / 2 * 240 + brightest % 480 / 2;
    EXPECT_NEAR(picture.plane(1)[chroma], 155, 3);
    EXPECT_NEAR(picture.plane(2)[chroma], 99, 3);
    for (const int centre : {0, 120 * 240 + 120}) {
        EXPECT_EQ(picture.plane(1)[centre], 128);
        EXPECT_EQ(picture.plane(2)[centre], 128);
    }
}

}  // namespace

}  // namespace zet::ZETShow
