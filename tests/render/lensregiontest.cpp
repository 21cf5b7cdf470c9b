// Where the lens circle lies in a picture, by hand.

#include "render/lensregion.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace zet::ZETShow {
namespace {

constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();

TEST(LensRegion, liesWhereItsNumbersSay) {
    const struct {
        const char* name;
        int width, height, lineSize;
        bool square;
        std::vector<int> region;
        CropParam crop;
    } cases[] = {
        {"none, not square", 160, 120, 160, true, {}, {0, 0, 120, 120}},
        {"none, padding, as it is", 200, 100, 256, false, {}, {0, 0, 155, 100}},
        {"whole", 1000, 1000, 1000, true, {5000, 5000, 5000, 5000}, {0, 0, 1000, 1000}},
        {"whole with padding", 1000, 1000, 1024, true, {5000, 5000, 5000, 5000}, {0, 0, 975, 1000}},
        {"half a pixel on the centre only", 1000, 1000, 1000, true, {1236, 1236, 1236, 1236}, {1, 1, 246, 246}},
        {"over the left edge", 1000, 1000, 1000, true, {2000, 5000, 3000, 4000}, {0, 100, 600, 600}},
        {"over the top edge, as it is", 1000, 1000, 1000, false, {5000, 2000, 4000, 3000}, {100, 0, 800, 600}},
        {"no radius", 1000, 1000, 1000, true, {5000, 2500, 0, 0}, {500, 250, 1000, 1000}},
        // 2^31 / 10000 as a float is 214748.359375; floats beyond 2^27 are 16 apart.
        {"huge", 1000, 1000, 1000, true, {most, most, most, most}, {0, 0, 429496704, 429496704}},
        {"huge and negative", 1000, 1000, 1000, true, {least, least, least, least}, {0, 0, -429496704, -429496704}},
    };
    for (const auto& [name, width, height, lineSize, square, region, crop] : cases) {
        const int* const numbers = region.empty() ? nullptr : region.data();
        const CropParam found = findLensRegion(numbers, width, height, lineSize, square);
        EXPECT_EQ(found, crop) << name << ": " << found.x << ' ' << found.y << ' ' << found.width << ' '
                               << found.height;
    }
}

TEST(RegionMap, dividesByThePicture) {
    const RegionMap map = mapOntoRegion({20, -10, 50, 40}, 100, 80);
    EXPECT_FLOAT_EQ(map.centreX, 0.45f);
    EXPECT_FLOAT_EQ(map.centreY, 0.125f);
    EXPECT_FLOAT_EQ(map.halfWidth, 0.25f);
    EXPECT_FLOAT_EQ(map.halfHeight, 0.25f);
}

}  // namespace
}  // namespace zet::ZETShow
