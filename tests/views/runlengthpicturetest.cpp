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

Bytes join(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

TEST(RunLengthPicture, UnpacksEveryTokenForm) {
    const struct {
        const char* name;
        Bytes stream, bytes;
    } cases[] = {
        {"short fills, one of them empty", {2, 0, 2, 0, 7, 0x84, 5, 0x80, 9, 0x82}, {7, 7, 7, 7, 9, 9}},
        {"short literals", {2, 0, 2, 0, 1, 0x05, 2, 3, 4, 5, 6, 0x01}, {1, 2, 3, 4, 5, 6}},
        {"medium literal", join({16, 0, 16, 0, 7, 0x21, 0x80}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
        {"medium fill, wins over long", {16, 0, 16, 0, 7, 0xe1, 0x80}, Bytes(384, 7)},
        {"long fills", {0, 1, 4, 1, 7, 0xc1, 0x02, 0x85, 7, 0xc0, 0xfe, 0x00}, Bytes(0x18600, 7)},
        {"long literal", join({16, 0, 16, 0, 7, 0x40, 0x80, 0x01}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
    };
    for (const auto& [name, stream, bytes] : cases) {
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_EQ(picture.width, stream[0] + 256 * stream[1]) << name;
        EXPECT_EQ(picture.height, stream[2] + 256 * stream[3]) << name;
        EXPECT_EQ(picture.bytes, bytes) << name;
    }
}

TEST(RunLengthPicture, RefusesADamagedStream) {
    const std::pair<const char*, Bytes> cases[] = {
        {"half a header", {2, 0, 2}},
        {"an odd width", {3, 0, 2, 0, 7, 0x89}},
        {"too few bytes", {2, 0, 2, 0, 7, 0x85}},
        {"a fill too long", {2, 0, 2, 0, 7, 0x87}},
        {"the longest fill", {2, 0, 2, 0, 7, 0xdf, 0xff, 0xff}},
        {"a literal too long", {2, 0, 2, 0, 7, 0x07, 1, 2, 3, 4, 5, 6}},
        {"a literal cut short", {2, 0, 2, 0, 7, 0x06, 1, 2, 3, 4}},
        {"an empty literal", {2, 0, 2, 0, 7, 0x86, 7, 0x00}},
        {"half a word", {2, 0, 2, 0, 7, 0x86, 7}},
        {"no fourth byte", {2, 0, 2, 0, 7, 0xc0, 0x06}},
    };
    for (const auto& [name, stream] : cases) {
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_TRUE(picture.width == 0 && picture.bytes.empty()) << name;
    }
    for (std::size_t size = 0; size < haloPicture.size(); size += 997)
        ASSERT_EQ(unpackPicture(haloPicture.first(size)).width, 0) << size;
}

// Angles are degrees clockwise from the right about the middle of the globe whose lit rim the picture shows.
TEST(HaloPicture, IsAThinBlueArcThatFadesOutOnTheUpperLeft) {
    const PlanarPicture picture = unpackPicture(haloPicture);
    ASSERT_EQ(picture.bytes.size(), 480 * 480 * 3 / 2);
    const std::uint8_t* const luma = picture.plane(0);
    const auto light = [luma](double angle, double radius) {
        const long x = std::lround(239 + radius * std::cos(angle * std::numbers::pi / 180));
        const long y = std::lround(245 + radius * std::sin(angle * std::numbers::pi / 180));
        return luma[480 * y + x];
    };
    const struct {
        const char* name;
        int from, to;
        double radius, light, off;  // one of its places
    } places[] = {
        {"right and lower right", 0, 30, 185, 80, 7}, {"bottom and left", 90, 170, 185, 50, 7},
        {"upper left", 195, 255, 152.5, 12.5, 12.5},  {"slow rise", 0, 165, 150, 10, 3},
        {"slow rise", 0, 165, 170, 27.5, 8},          {"sharp fall", 0, 165, 200, 5, 2},
        {"sharp fall", 0, 165, 230, 2.5, 1.5},
    };
    for (const auto& place : places) {
        for (int angle = place.from; angle <= place.to; angle += 15)
            EXPECT_NEAR(light(angle, place.radius), place.light, place.off) << place.name << ", " << angle;
    }
    const auto brightest = std::max_element(luma, picture.plane(1)) - luma;
    const auto chroma = brightest / 480 / 2 * 240 + brightest % 480 / 2;
    EXPECT_NEAR(luma[brightest], 87, 2);
    EXPECT_NEAR(picture.plane(1)[chroma], 155, 3) << "blue";
    EXPECT_NEAR(picture.plane(2)[chroma], 99, 3) << "blue";
    EXPECT_EQ(picture.plane(1)[0], 128) << "the dark is grey";
    EXPECT_NEAR(static_cast<double>(std::count(luma, picture.plane(1), 0)) / (480 * 480), 1 / 3.0, 0.03) << "black";
}

}  // namespace
}  // namespace zet::ZETShow
