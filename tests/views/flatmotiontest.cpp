#include "views/flatmotion.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zet::test {
namespace {

using ZETShow::FlatMotion;

/// Steps until the animation has ended and answers how many frames that took.
int fly(FlatMotion& motion) {
    motion.startZoomAnimation();
    int frames = 0;
    while (motion._zoomAnimating && frames < 1000) {
        motion.stepZoomAnimation();
        ++frames;
    }
    return frames;
}

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
    motion._panY = -0.9f;
    motion.startZoomAnimation();
    for (int frame = 1; frame <= 50; ++frame) {
        motion.stepZoomAnimation();
        ASSERT_NEAR(motion._scale, 4 - 0.06 * frame, 1e-4) << frame;
        ASSERT_NEAR(motion._panX, 1.5 * (1 - frame / 50.0), 1e-4) << frame;
        ASSERT_NEAR(motion._panY, -0.9 * (1 - frame / 50.0), 1e-4) << frame;
    }
    if (motion._zoomAnimating) motion.stepZoomAnimation();
    motion.clampPan();
    EXPECT_EQ(motion._scale, 1.0f);
    EXPECT_EQ(motion._panX, 0.0f);
    EXPECT_FALSE(motion._zoomAnimating);
}

TEST(FlatMotion, fliesOnInTheOldDirectionAfterAnInterruption) {
    FlatMotion motion;
    motion.startZoomAnimation();
    for (int i = 0; i < 10; ++i) motion.stepZoomAnimation();
    motion.pinch(0.5f);
    EXPECT_FALSE(motion._zoomAnimating);
    EXPECT_NEAR(motion._scale, 1.6 - 0.055, 1e-5);
    fly(motion);
    EXPECT_EQ(motion._scale, 4.0f) << "a zoom between the bounds would start backwards from rest";
    motion.setScale(2.5f);
    fly(motion);
    EXPECT_EQ(motion._scale, 1.0f);
}

TEST(FlatMotion, pinchesByOneStepInItsDirection) {
    const struct {
        float factor, from;
        double to;
    } cases[] = {{1.01f, 1, 1.055}, {100, 2, 2.055}, {1, 2, 1.945}, {0.1f, 2, 1.945}, {2, 3.99f, 4}, {0, 1.05f, 1}};
    for (const auto& [factor, from, to] : cases) {
        FlatMotion motion;
        motion._scale = from;
        motion.pinch(factor);
        EXPECT_NEAR(motion._scale, to, 1e-6) << factor << ' ' << from;
    }
}

TEST(FlatMotion, holdsTheZoomWithinItsBounds) {
    const struct {
        float maximum, scale, applied;
        int result;
    } cases[] = {{4, 9, 4, -1}, {10, 9, 4, -1},     {2, 3, 2, -1}, {4, 0.5f, 1, -1}, {4, -3, 1, -1},
                 {4, 1, 1, 0},  {4, 2.5f, 2.5f, 0}, {4, 4, 4, 0},  {0.5f, 3, 1, -1}, {-1, 1, 1, 0}};
    for (const auto& [maximum, scale, applied, result] : cases) {
        FlatMotion motion;
        motion.setMaxScale(maximum);
        EXPECT_EQ(motion.setScale(scale), result) << maximum << ' ' << scale;
        EXPECT_EQ(motion._scale, applied) << maximum << ' ' << scale;
    }
    FlatMotion motion;
    motion.setScale(3);
    motion.setMaxScale(2);
    EXPECT_EQ(motion._scale, 2.0f) << "a new bound pulls the zoom down";
}

TEST(FlatMotion, dragsAgainstTheSecondPointByAShareOfTheZoom) {
    FlatMotion motion;
    motion._scale = 3;
    motion.drag(110, 60, 100, 100);
    EXPECT_NEAR(motion._panX, 10 * 0.001 * 3, 1e-7);
    EXPECT_NEAR(motion._panY, 40 * 0.001 * 3, 1e-7);

    const struct {
        float dx, dy;
        bool stops;
    } cases[] = {{0.25f, 0.125f, false}, {0.25f, -0.25f, true}, {-0.5f, 0, true}, {0, -0.375f, false}};
    for (const auto& [dx, dy, stops] : cases) {
        motion.startZoomAnimation();
        motion.drag(100 + dx, 100 + dy, 100, 100);
        EXPECT_EQ(motion._zoomAnimating == 0, stops) << dx << ' ' << dy;
    }
}

TEST(FlatMotion, keepsThePictureOverTheView) {
    FlatMotion motion;
    motion._panX = 0.3f;
    motion._panY = -0.2f;
    motion.clampPan();
    EXPECT_EQ(motion._panX, 0.0f) << "nothing to move at zoom 1";
    EXPECT_EQ(motion._panY, 0.0f);
    motion._scale = 2.5f;
    motion._panX = -2.0f;
    motion._panY = 1.25f;
    motion.clampPan();
    EXPECT_EQ(motion._panX, -1.5f);
    EXPECT_EQ(motion._panY, 1.25f);
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
