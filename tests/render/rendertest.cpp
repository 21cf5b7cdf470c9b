// What a view hears from the bus, and inertia. The display behind it has no EGL, so that nothing here needs a screen.

#include <gmock/gmock.h>

#include <limits>
#include <optional>

#include "display/display.h"
#include "support/eglcalls.h"
#include "support/probeview.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RenderNumbers : public testing::Test {
protected:
    RenderNumbers() {
        failEgl(EglCall::getDisplay);
        display.emplace(&displayBus, &global);
        bus.registObserver(
            DCFG_RENDER_REQUEST, [this](DisplayConfig&, DisplayConfigUserData&) { return ++requests; }, nullptr,
            DCFG_FLAG_EVENT);
    }
    ~RenderNumbers() override {
        if (view) view->retire();
        view.reset();
        display.reset();
        resetEgl();
    }
    void make(float touchScale = 1) {
        view.emplace(&bus, touchScale, &*display);
        view->goLive();
    }
    /// The calls since the last time.
    std::vector<std::string> calls() { return std::exchange(view->names, {}); }
    /// Velocities of the steps of inertia until it ends; counts the step without a call.
    std::vector<float> inertia() {
        std::vector<float> velocities;
        for (;;) {
            view->stepFling();
            if (calls().empty()) return velocities;
            velocities.push_back(view->numbers[0]);
        }
    }
    template <typename Record>
    void setInPlace(std::int64_t id, Record& record) {
        bus.setConfig(id, static_cast<const void*>(&record));
    }

    DisplayConfig displayBus, bus;
    GlobalConfiger global;
    std::optional<ZETShow::Display> display;
    std::optional<ProbeView> view;
    int requests = 0;
};

TEST_F(RenderNumbers, turnsGesturesIntoCallsAndRequests) {
    make();
    TouchPoint point{3, 4};
    DragPoints drag{1, 2, 3, 4};
    setInPlace(DCFG_DOUBLE_TAP, point);
    EXPECT_THAT(view->numbers, ElementsAre(3, 4));
    setInPlace(DCFG_TOUCH_UP, point);
    setInPlace(DCFG_DRAG, drag);
    EXPECT_THAT(view->numbers, ElementsAre(1, 2, 3, 4));
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_THAT(view->numbers, ElementsAre(1.5f));
    EXPECT_THAT(calls(), ElementsAre("double tap", "up", "drag", "pinch"));
    EXPECT_EQ(requests, 4);

    setInPlace(DCFG_TOUCH_DOWN, point);
    EXPECT_EQ(requests, 4) << "a gesture that the view doesn't know";
    view->result = -1;
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_EQ(requests, 4) << "a gesture that the view refuses";
}

TEST_F(RenderNumbers, scalesCoordinatesInTheSendersRecord) {
    make(2);
    TouchPoint point{3, 4};
    DragPoints drag{1, 2, 3, 4};
    setInPlace(DCFG_TOUCH_UP, point);
    EXPECT_EQ(point.x, 6);
    EXPECT_EQ(point.y, 8);
    setInPlace(DCFG_DRAG, drag);
    EXPECT_THAT(view->numbers, ElementsAre(2, 4, 6, 8));
    EXPECT_EQ(drag.y2, 8);
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_THAT(view->numbers, ElementsAre(1.5f)) << "a ratio isn't scaled";
}

TEST_F(RenderNumbers, ignoresWhatIsNoNumberAndNoRecord) {
    make(2);
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        TouchPoint point{3, bad};
        DragPoints drag{1, 2, bad, 4};
        const Fling fling{bad, 1};
        const AutoRotate rotate{1, bad};
        setInPlace(DCFG_DOUBLE_TAP, point);
        setInPlace(DCFG_DRAG, drag);
        bus.setConfig(DCFG_PINCH, bad);
        bus.setConfig(DCFG_FLING, &fling);
        bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
        EXPECT_EQ(point.x, 3) << "nothing is scaled either";
    }
    for (const std::int64_t id : {DCFG_DOUBLE_TAP, DCFG_DRAG, DCFG_FLING, DCFG_AUTO_ROTATE, DCFG_SCENE_BACKDROP}) {
        bus.setConfig(id, nullptr);
        bus.setConfig(id, SizeHelp{"abc", 4});
    }
    view->stepFling();
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(requests, 0);
}

TEST_F(RenderNumbers, flingsUntilBothSpeedsAreSmall) {
    make();
    const Fling slow{0.1f, -0.1f}, slow2{0.11f, 0}, one{1, 0}, down{0.2f, -2};
    bus.setConfig(DCFG_FLING, &slow);
    EXPECT_THAT(inertia(), IsEmpty());
    bus.setConfig(DCFG_FLING, &slow2);
    EXPECT_THAT(inertia(), IsEmpty()) << "starts, and ends with its first step";

    bus.setConfig(DCFG_FLING, &one);
    const std::vector<float> velocities = inertia();
    ASSERT_EQ(velocities.size(), 6u);
    const double expected[] = {0.9, 0.81, 0.729, 0.6561, 0.59049, 0.531441};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(velocities[i], expected[i], 1e-6);

    bus.setConfig(DCFG_FLING, &down);
    EXPECT_EQ(inertia().size(), 13u) << "2 times 0.9 to the 14th is the first below 0.5";
    EXPECT_EQ(requests, 0) << "inertia steps with the frames that are drawn anyway";
}

TEST_F(RenderNumbers, rotationOnStopsInertiaAndOffDoesNot) {
    make();
    const Fling fling{100, 0};
    const AutoRotate off{0, 2}, on{5, 3};
    bus.setConfig(DCFG_FLING, &fling);
    bus.setConfig(DCFG_AUTO_ROTATE, &off);
    EXPECT_THAT(view->numbers, ElementsAre(0, 2));
    view->stepFling();
    EXPECT_THAT(calls(), ElementsAre("rotate", "fling"));
    bus.setConfig(DCFG_AUTO_ROTATE, &on);
    EXPECT_THAT(view->numbers, ElementsAre(1, 3));
    view->stepFling();
    EXPECT_THAT(calls(), ElementsAre("rotate"));
}

TEST_F(RenderNumbers, hearsEarlierSettingsWhenItStandsAndNothingAfterIt) {
    const AutoRotate rotate{1, 0.5f};
    const SceneBackdrop scene{0, 7};
    TouchPoint point{3, 4};
    bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
    bus.setConfig(DCFG_OPENING_FLIGHT, 1);
    bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
    setInPlace(DCFG_DOUBLE_TAP, point);
    make();
    EXPECT_THAT(view->numbers, ElementsAre(0, 1));
    EXPECT_THAT(calls(), ElementsAre("rotate", "flight", "scene")) << "in the order of registration";
    view->retire();
    bus.setConfig(DCFG_OPENING_FLIGHT, 0);
    bus.setConfig(DCFG_PINCH, 2.0f);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(requests, 0);
}

}  // namespace
}  // namespace zet::test
