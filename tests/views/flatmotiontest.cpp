#include "views/flatmotion.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>

namespace zet::test {
namespace {

using ZETShow::FlatMotion;

TEST(FlatMotion, fliesToTheFullZoomIn51FramesAndBack) {
    FlatMotion motion;
    motion.startZoomAnimation();
    for (int frame = 1; frame <= 50; ++frame) {
        motion.stepZoomAnimation();
        ASSERT_NEAR(motion._scale, 1 + 0.06 * frame, 1e-5) << frame;
        ASSERT_TRUE(motion._zoomAnimating) << "the fiftieth step ends just below 4";
    }
    motion.stepZoomAnimation();
    EXPECT_EQ(motion._scale, 4.0f);
    EXPECT_FALSE(motion._zoomAnimating);

    // On the way back pan and zoom reach their ends together; the last step goes past and is held.
    motion._panX = 1.5f;
    motion.startZoomAnimation();
    for (int frame = 1; frame <= 50; ++frame) {
        motion.stepZoomAnimation();
        ASSERT_NEAR(motion._scale, 4 - 0.06 * frame, 1e-4) << frame;
        ASSERT_NEAR(motion._panX, 1.5 * (1 - frame / 50.0), 1e-4) << frame;
    }
    if (motion._zoomAnimating) motion.stepZoomAnimation();
    EXPECT_EQ(motion._scale, 1.0f);
    EXPECT_FALSE(motion._zoomAnimating);
}

TEST(FlatMotion, holdsTheZoomWithinItsBounds) {
    const struct {
        float maximum, scale, applied;
        int result;
    } cases[] = {{10, 9, 4, -1}, {2, 3, 2, -1}, {4, -3, 1, -1}, {4, 2.5f, 2.5f, 0}, {4, 4, 4, 0}, {0.5f, 3, 1, -1}};
    for (const auto& [maximum, scale, applied, result] : cases) {
        FlatMotion motion;
        motion.setMaxScale(maximum);
        EXPECT_EQ(motion.setScale(scale), result) << maximum << ' ' << scale;
        EXPECT_EQ(motion._scale, applied) << maximum << ' ' << scale;
    }
    FlatMotion motion;
    for (const auto& [factor, scale] : {std::pair(1.01f, 1.055), {100.0f, 1.11}, {1.0f, 1.055}, {0.0f, 1.0}}) {
        motion.pinch(factor);
        EXPECT_NEAR(motion._scale, scale, 1e-6) << factor;
    }
    motion.setScale(3);
    motion.setMaxScale(2);
    EXPECT_EQ(motion._scale, 2.0f) << "a new bound pulls the zoom down";
}

TEST(FlatMotion, stopsTheFlightForADragButNotForATremble) {
    FlatMotion motion;
    for (const auto& [dx, stops] : {std::pair(0.25f, false), {-0.5f, true}}) {
        motion.startZoomAnimation();
        motion.drag(100 + dx, 100.125f, 100, 100);
        EXPECT_EQ(motion._zoomAnimating == 0, stops) << dx;
    }
}

TEST(FlatMotion, undoesNoZoomThatIsSetWhileAFrameIsDrawn) {
    FlatMotion motion;
    std::atomic<bool> done = false;
    std::thread frames([&] {
        while (!done) motion.clampPan();
    });
    int undone = 0;
    for (int i = 0; i < 1000000; ++i) {
        const float scale = i % 2 != 0 ? 2 : 3;
        motion.setScale(scale);
        for (int look = 0; look < 20; ++look) undone += motion._scale != scale;
    }
    done = true;
    frames.join();
    EXPECT_EQ(undone, 0);
}

}  // namespace
}  // namespace zet::test
