#include "views/wallthreeviewmotion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "views/pose.h"

namespace zet::ZETShow {
namespace {

using test::hitDome;
using test::Pose;

TEST(WallThreeViewMotion, panesLeaveTwoPixelsBetweenThem) {
    using Rect = std::tuple<int, int, int, int>;
    struct Case {
        int width, height;
        Rect left, panorama, right;
        float aspect;
    };
    const Case cases[] = {
        {1920, 1080, {0, 541, 959, 539}, {0, 0, 1920, 539}, {961, 541, 959, 539}, 1},
        {2560, 1080, {0, 541, 1279, 539}, {0, 0, 2560, 539}, {1281, 541, 1279, 539}, 2},
        {801, 603, {0, 302, 399, 300}, {0, 0, 801, 300}, {401, 302, 399, 300}, 1},
        {500, 900, {0, 451, 249, 449}, {0, 0, 500, 449}, {251, 451, 249, 449}, 0},
        {11, 11, {0, 6, 4, 4}, {0, 0, 11, 4}, {6, 6, 4, 4}, 1},
    };
    for (const Case& c : cases) {
        WallThreeViewMotion motion;
        ASSERT_TRUE(motion._size.changeTo(c.width, c.height));
        motion.layoutPanes();
        const auto rect = [&motion](int p) {
            const PaneRect& pane = motion._paneRects[p];
            return Rect(pane.x, pane.y, pane.width, pane.height);
        };
        EXPECT_EQ(std::tuple(rect(0), rect(1), rect(2)), std::tuple(c.left, c.panorama, c.right)) << c.width;
        EXPECT_EQ(motion._aspect, c.aspect) << c.width;
    }
}

TEST(WallThreeViewMotion, domeComesNearerAfterTheFirstFrame) {
    WallThreeViewMotion motion;
    MatrixState matrices;
    motion._size.changeTo(1920, 1080);
    motion.layoutPanes();
    for (const double shift : {0.0, 1.0486, 1.0486}) {
        for (const int p : {0, 2}) {
            motion.updatePaneCamera(p, matrices);
            const Pose camera(matrices._viewMatrix);
            const auto [a, b] = hitDome(camera.eye, camera.ahead);
            EXPECT_NEAR(a, p == 0 ? 90 : 270, 0.01) << "left, then right";
            EXPECT_NEAR(b, 90 - 50.4, 0.01);
            EXPECT_NEAR(std::sqrt(dot(camera.eye, camera.eye)), 2 - shift, 1e-5);
        }
    }
}

TEST(WallThreeViewMotion, panoramaShowsThisPartOfItsQuad) {
    MatrixState matrices;
    matrixIdentity(matrices._modelMatrix);
    WallThreeViewMotion::updatePanoramaCamera(matrices);
    const float* const m = matrices.computeMvp();
    struct Case {
        const char* what;
        double s, t, x, y;  // of the 3.3 by 2 quad, and of the screen
    };
    const double edge = 0.9 / 3.3;
    for (const Case& c : {Case{"top left", 0.5 - edge, 0.05, -1, 1}, Case{"bottom right", 0.5 + edge, 0.95, 1, -1},
                          Case{"middle", 0.5, 0.5, 0, 0}, Case{"top right", 0.5 - edge, 0.95, 1, 1}}) {
        const double point[] = {3.3 * (c.s - 0.5), 2 * (c.t - 0.5), 0, 1};
        double seen[4] = {};
        for (int i = 0; i < 16; ++i) seen[i % 4] += static_cast<double>(m[i]) * point[i / 4];
        EXPECT_NEAR(seen[0] / seen[3], c.x, 1e-5) << c.what;
        EXPECT_NEAR(seen[1] / seen[3], c.y, 1e-5) << c.what;
        EXPECT_LE(std::fabs(seen[2]), seen[3]) << c.what << " is not cut off by the near plane, in which it lies";
    }
}

}  // namespace
}  // namespace zet::ZETShow
