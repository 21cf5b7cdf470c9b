#include "views/commonmotion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace zet::ZETShow {
namespace {

TEST(CommonMotion, fliesToTheFullZoomIn51FramesAndBack) {
    CommonMotion motion;
    motion.doubleTap(0, 0);
    for (int frame = 1; frame <= 51; ++frame) {
        ASSERT_TRUE(motion._zoomAnimating) << "the fiftieth step ends just below 4";
        motion.step();
        ASSERT_NEAR(motion._scale, std::min(1 + 0.06 * frame, 4.0), 1e-5) << frame;
    }
    EXPECT_EQ(motion._scale, 4.0f);
    EXPECT_FALSE(motion._zoomAnimating);

    motion._panX = 1.5f;
    motion.doubleTap(0, 0);
    for (int frame = 1; frame <= 50; ++frame) {
        motion.step();
        ASSERT_NEAR(motion._scale, 4 - 0.06 * frame, 1e-4) << frame;
        ASSERT_NEAR(motion._panX, 1.5 * (1 - frame / 50.0), 1e-4) << "arrives together with the zoom, " << frame;
    }
    motion.step();
    EXPECT_EQ(motion._scale, 1.0f);
    EXPECT_FALSE(motion._zoomAnimating);
}

TEST(CommonMotion, stopsTheFlightForADragButNotForATremble) {
    CommonMotion motion;
    motion._surfaceWidth = motion._surfaceHeight = 200;
    for (const auto& [dx, stops] : {std::pair(0.25f, false), {-0.5f, true}}) {
        motion.doubleTap(0, 0);
        motion.drag(100 + dx, 100.125f, 100, 100);
        EXPECT_EQ(motion._zoomAnimating == 0, stops) << dx;
    }
}

}  // namespace
}  // namespace zet::ZETShow
