#include "views/starfield.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <vector>

namespace zet::ZETShow {

namespace {

TEST(StarField, FillsARingBehindTheBowl) {
    StarField stars;
    const std::vector<float> first = stars._points;
    stars.place();
    EXPECT_NE(stars._points, first);
    EXPECT_EQ(stars._pointPtr, stars._points.data());
    std::set<int> quadrants;
    for (std::size_t i = 0; i < 3 * StarField::_pointCount; i += 3) {
        const float x = stars._points[i];
        const float y = stars._points[i + 1];
        EXPECT_GE(std::hypot(x, y), 8.999f);
        EXPECT_LE(std::hypot(x, y), 24.001f);
        EXPECT_EQ(stars._points[i + 2], -7.5f);
        quadrants.insert((x < 0) + 2 * (y < 0));
    }
    EXPECT_EQ(quadrants.size(), 4u);
}

TEST(StarField, ShiversRoundItsPlaces) {
    StarField stars;
    for (int k = 0; k < 100; ++k) {
        stars.shift(350);
        ASSERT_EQ(stars._pointPtr, stars._pointsShifted.data());
        int moved = 0;
        for (std::size_t i = 0; i < stars._points.size(); i += 3) {
            const float dx = stars._pointPtr[i] - stars._points[i];
            const float dy = stars._pointPtr[i + 1] - stars._points[i + 1];
            if (dx == 0 && dy == 0) continue;
            ++moved;
            ASSERT_LT(i, 3 * 350u);
            ASSERT_NEAR(std::fabs(dx) + std::fabs(dy), 0.03, 1e-5);
            ASSERT_TRUE(dx == 0 || dy == 0);
            ASSERT_LE(stars._pointPtr[i], 24);
            ASSERT_LE(stars._pointPtr[i + 1], 24);
        }
        if (k > 0) continue;
        EXPECT_GT(moved, 40);
        EXPECT_LE(moved, 70);
    }
}

TEST(StarField, BrightnessGoesUpAndDown) {
    StarField stars;
    stars._pointLight[1] = 0.1f;
    stars._pointLightRising[1] = false;
    EXPECT_NEAR(stars.stepLight(1), 0.105, 1e-6) << "rises whatever it did before";
    stars._pointLight[2] = 0.2f;
    int draws = 0;
    while (stars.stepLight(2) < 1.8f && draws < 1000) ++draws;
    EXPECT_NEAR(draws, 320, 1);
    while (stars.stepLight(2) > 0.2f && draws < 1000) ++draws;
    EXPECT_NEAR(draws, 640, 2);
}

}  // namespace

}  // namespace zet::ZETShow
