#include "views/panesgl.h"

namespace zet::test {
namespace {

struct WallTwoViewGl : PanesGl {
    void comparePanes(double pitch, double yaw, double shift, const std::string& what) {
        const DomeCamera detail{2.0 - shift, 1.5, -pitch, 0, 0, 0, 0, -yaw};
        const DomeCamera overview{9.2, 1.5, 0, 0, 0, 0, 0};
        const Picture picture = shown();
        compareDome(picture, detailRect, detail, what + ", detail");
        compareMap(picture, overviewRect, overview, detail, what + ", overview");
    }

    static constexpr Rect overviewRect{4, 103, 296, 296};
    static constexpr Rect detailRect{300, 103, 296, 296};
    static constexpr double most = 1.0486;  // shift
};

TEST_F(WallTwoViewGl, lightsUpWhatTheDetailShows) {
    startView(8, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    comparePanes(0, 0, 0, "rest");
    touch(DCFG_TOUCH_DOWN, 299, 250);
    comparePanes(0, 50.4, most, "right end");
    touch(DCFG_TOUCH_DOWN, 1, 250);
    comparePanes(0, -50.4, most, "left end");
    touch(DCFG_TOUCH_DOWN, 150, 500);
    comparePanes(50.4, 0, most, "bottom end");
    touch(DCFG_TOUCH_DOWN, 150, 1);
    comparePanes(-50.4, 0, most, "top end");
}

TEST_F(WallTwoViewGl, dragsAndFlingsMoveIt) {
    startView(8, 600, 501);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    shown();
    drag(100, 100, 196, 148);  // 2.88 degrees are two steps, and half of it
    comparePanes(1.44, 2.88, most * std::hypot(1.44, 2.88) / 50.4 / 2, "on the overview, with the finger");
    for (int i = 0; i < 10; ++i) drag(400, 300, 496, 252);
    comparePanes(15.84, -25.92, most * std::hypot(15.84, 25.92) / 50.4 * (1 - 15.84 / 25.92), "on the detail");
    const Fling fling{-1000, 0};
    bus.setConfig(DCFG_FLING, &fling);
    for (int i = 0; i < 3; ++i) drawOut();
    double way = 0;
    for (double v = 900; v >= 0.5; v *= 0.9) way += 0.405 * v / 1000;
    const double yaw = -25.92 - way;
    comparePanes(15.84, yaw, most * std::hypot(15.84, yaw) / 50.4 * (1 - 15.84 / -yaw), "flung");
}

TEST_F(WallTwoViewGl, leavesNothingForTheNextView) {
    startView(8, 600, 501);
    shown(frame);
    expectNothingLeftOn();
    const int requests = requestsOf([this] {
        bus.setConfig(DCFG_PINCH, 2.0f);
        touch(DCFG_DOUBLE_TAP, 100, 100);
        touch(DCFG_TOUCH_UP, 100, 100);
    });
    EXPECT_EQ(requests, 0) << "gestures that it doesn't know";
    EXPECT_EQ(requestsOf([this] { touch(DCFG_TOUCH_DOWN, 450, 250); }), 1);
}

}  // namespace
}  // namespace zet::test
