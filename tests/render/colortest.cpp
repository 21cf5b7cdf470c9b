// Colours coded as H.273 says, and back.

#include "render/color.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace zet::ZETShow {
namespace {

TEST(ColorTransform, undoesTheCodingOfEachMatrixAndRange) {
    const struct {
        int matrix;
        double red, blue;  // H.273, table 4
    } codings[] = {{1, 0.2126, 0.0722}, {4, 0.30, 0.11},   {5, 0.299, 0.114},
                   {6, 0.299, 0.114},   {7, 0.212, 0.087}, {9, 0.2627, 0.0593}};
    const double colors[][3] = {{1, 1, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.2, 0.7, 0.4}};
    for (const auto& [matrix, red, blue] : codings) {
        for (const bool full : {false, true}) {
            const auto transform = findColorTransform({matrix, full});
            ASSERT_TRUE(transform) << matrix;
            for (const auto& color : colors) {
                const double luma = red * color[0] + (1 - red - blue) * color[1] + blue * color[2];
                const double cb = (color[2] - luma) / (2 * (1 - blue)), cr = (color[0] - luma) / (2 * (1 - red));
                const auto byte = [](double value) { return std::clamp(std::round(value), 0.0, 255.0) / 255; };
                const double yuv[] = {byte(full ? 255 * luma : 219 * luma + 16), byte((full ? 255 : 224) * cb + 128),
                                      byte((full ? 255 : 224) * cr + 128)};
                for (int channel = 0; channel < 3; ++channel) {
                    double seen = 0;
                    for (int i = 0; i < 3; ++i)
                        seen += static_cast<double>(transform->matrix[3 * i + channel]) *
                                (yuv[i] - static_cast<double>(transform->offset[i]));
                    // Three samples, each off by half a level, weigh up to 1.17 + 2.14; full range clips at 255.5.
                    EXPECT_NEAR(seen, color[channel], 2.1 / 255) << matrix << full << channel;
                }
            }
        }
    }
    for (const int unknown : {-1, 0, 3, 8, 10, 1000}) EXPECT_FALSE(findColorTransform({unknown, 1})) << unknown;
}

}  // namespace
}  // namespace zet::ZETShow
