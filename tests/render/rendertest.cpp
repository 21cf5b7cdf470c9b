// What a view hears from the bus, and inertia. The display behind it has no EGL, so that nothing here needs a screen.

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <sstream>

#include "display/display.h"
#include "render/render.h"
#include "support/eglcalls.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A view that draws nothing and notes its calls: a name and the numbers.
class ProbeView final : public ZETShow::Render {
public:
    using Render::Render;
    int init() override { return 0; }
    int createProgram() override { return 0; }
    int render(int, int, const ZETShow::Frame&) override { return 0; }
    int onTouchUp(float x, float y) override { return note("up", {x, y}); }
    int onPinch(float factor) override { return note("pinch", {factor}); }
    int onDoubleTap(float x, float y) override { return note("double tap", {x, y}); }
    int onDrag(float x1, float y1, float x2, float y2) override { return note("drag", {x1, y1, x2, y2}); }
    void setAutoRotate(bool on, float speed) override { note("rotate", {on ? 1.0f : 0.0f, speed}); }
    void onFling(float x, float y) override { note("fling", {x, y}); }
    void setOpeningFlight(bool on) override { note("flight", {on ? 1.0f : 0.0f}); }
    void setSceneBackdrop(bool first, bool stars) override {
        note("scene", {first ? 1.0f : 0.0f, stars ? 1.0f : 0.0f});
    }

    std::vector<std::string> calls;
    int result = 0;  // of the gestures

private:
    int note(const char* call, std::initializer_list<float> numbers) {
        std::ostringstream line;  // prints 6 digits
        line << call;
        for (const float number : numbers) line << ' ' << number;
        calls.push_back(line.str());
        return result;
    }
};

class RenderNumbers : public testing::Test {
protected:
    RenderNumbers() {
        failEgl(EglCall::getDisplay);
        display.emplace(&displayBus, &global);
        const auto count = [this](DisplayConfig&, DisplayConfigUserData&) { return ++requests; };
        bus.registObserver(DCFG_RENDER_REQUEST, count, nullptr, DCFG_FLAG_EVENT);
    }
    ~RenderNumbers() override {
        view->retire();
        view.reset();
        display.reset();
        resetEgl();
    }
    void make(float touchScale = 1) {
        view.emplace(&bus, touchScale, &*display);
        view->goLive();
    }
    /// The calls since the last time.
    std::vector<std::string> calls() { return std::exchange(view->calls, {}); }
    /// The calls of all steps of inertia.
    std::vector<std::string> inertia() {
        for (std::size_t before = 1; before != view->calls.size();) {
            before = view->calls.size();
            view->stepFling();
        }
        return calls();
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
    make(2);
    TouchPoint point{3, 4}, tap{5, 6};
    DragPoints drag{1, 2, 3, 4};
    setInPlace(DCFG_DOUBLE_TAP, tap);
    setInPlace(DCFG_TOUCH_UP, point);
    setInPlace(DCFG_DRAG, drag);
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_THAT(calls(), ElementsAre("double tap 10 12", "up 6 8", "drag 2 4 6 8", "pinch 1.5"));
    EXPECT_EQ(point.y, 8) << "scaled in the sender's record";
    EXPECT_EQ(drag.y2, 8);
    EXPECT_EQ(requests, 4);
    setInPlace(DCFG_TOUCH_DOWN, point);
    EXPECT_EQ(requests, 4) << "a gesture that the view doesn't know";
    view->result = -1;
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_EQ(requests, 4) << "a gesture that the view refuses";
}

TEST_F(RenderNumbers, ignoresWhatIsNoNumberAndNoRecord) {
    make(2);
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        DragPoints drag{1, 2, bad, 4};
        const Fling fling{bad, 1};
        const AutoRotate rotate{1, bad};
        setInPlace(DCFG_DRAG, drag);
        EXPECT_EQ(drag.x1, 1) << "nothing is scaled either";
        bus.setConfig(DCFG_PINCH, bad);
        bus.setConfig(DCFG_FLING, &fling);
        bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
    }
    for (const std::int64_t id : {DCFG_DOUBLE_TAP, DCFG_DRAG, DCFG_FLING, DCFG_AUTO_ROTATE, DCFG_SCENE_BACKDROP}) {
        bus.setConfig(id, nullptr);
        bus.setConfig(id, SizeHelp{"abc", 4});
    }
    EXPECT_THAT(inertia(), IsEmpty());
    EXPECT_EQ(requests, 0);
}

TEST_F(RenderNumbers, flingsUntilBothSpeedsAreSmallOrRotationStarts) {
    make();
    const Fling slow{0.1f, -0.1f}, one{1, 0}, down{0.2f, -2};
    bus.setConfig(DCFG_FLING, &slow);
    EXPECT_THAT(inertia(), IsEmpty());
    bus.setConfig(DCFG_FLING, &one);
    EXPECT_THAT(inertia(), ElementsAre("fling 0.9 0", "fling 0.81 0", "fling 0.729 0", "fling 0.6561 0",
                                       "fling 0.59049 0", "fling 0.531441 0"));
    bus.setConfig(DCFG_FLING, &down);
    EXPECT_EQ(inertia().size(), 13u) << "2 times 0.9 to the 14th is the first below 0.5";
    EXPECT_EQ(requests, 0) << "inertia steps with the frames that are drawn anyway";

    const AutoRotate off{0, 2}, on{5, 3};
    bus.setConfig(DCFG_FLING, &one);
    bus.setConfig(DCFG_AUTO_ROTATE, &off);
    view->stepFling();
    EXPECT_THAT(calls(), ElementsAre("rotate 0 2", "fling 0.9 0"));
    bus.setConfig(DCFG_AUTO_ROTATE, &on);
    EXPECT_THAT(inertia(), ElementsAre("rotate 1 3"));
}

TEST_F(RenderNumbers, hearsEarlierSettingsWhenItStandsAndNothingAfterIt) {
    const AutoRotate rotate{1, 0.5f};
    const SceneBackdrop scene{0, 7};
    const Fling fling{100, 100};
    bus.setConfig(DCFG_FLING, &fling);
    bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
    bus.setConfig(DCFG_OPENING_FLIGHT, 1);
    bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
    bus.setConfig(DCFG_PINCH, 2.0f);
    make();
    EXPECT_THAT(calls(), ElementsAre("rotate 1 0.5", "scene 0 1", "flight 1")) << "in the order of registration";
    EXPECT_THAT(inertia(), IsEmpty()) << "a fling is over when its moment is";
    view->retire();
    bus.setConfig(DCFG_OPENING_FLIGHT, 0);
    bus.setConfig(DCFG_PINCH, 2.0f);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(requests, 0);
}

}  // namespace
}  // namespace zet::test
