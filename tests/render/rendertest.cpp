// How gestures and settings get from the bus to a view, and inertia: all without a display, GL or a screen.

#include <gmock/gmock.h>

#include <limits>
#include <sstream>
#include <utility>

#include "render/render.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes its calls: a name and the numbers.
class ProbeMotion final : public ZETShow::Motion {
public:
    bool touchUp(float x, float y) override { return note("up", {x, y}); }
    bool pinch(float factor) override { return note("pinch", {factor}); }
    bool doubleTap(float x, float y) override { return note("double tap", {x, y}); }
    bool drag(float x1, float y1, float x2, float y2) override { return note("drag", {x1, y1, x2, y2}); }
    void setAutoRotate(bool on, float speed) override { note("rotate", {on ? 1.0f : 0.0f, speed}); }
    void setOpeningFlight(bool on) override { note("flight", {on ? 1.0f : 0.0f}); }
    void setSceneBackdrop(bool first, bool stars) override {
        note("scene", {first ? 1.0f : 0.0f, stars ? 1.0f : 0.0f});
    }

    std::vector<std::string> calls;
    bool result = true;  // of the gestures

private:
    void fling(float x, float y) override { note("fling", {x, y}); }
    bool note(const char* call, std::initializer_list<float> numbers) {
        std::ostringstream line;  // prints 6 digits
        line << call;
        for (const float number : numbers) line << ' ' << number;
        calls.push_back(line.str());
        return result;
    }
};

/// Draws nothing. Its one setting for the render thread asks for a redraw.
class ProbeView final : public ZETShow::Render {
public:
    using Render::Render;
    int init(const ZETShow::ColorTransform&) override {
        observeOnRenderThread(DCFG_FACE_OPTION, DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY, [this](DisplayConfigUserData&) {
            ++worked;
            return true;
        });
        return 0;
    }
    int render(int, int, const ZETShow::Frame&) override { return 0; }

    int worked = 0;
};

/// Runs a task where it is posted, after `beforeTask`.
class ProbeThread final : public ZETShow::RenderThread {
public:
    ProbeThread() : RenderThread(nullptr) { _door->open(); }
    int postTask(const std::function<int()>& task) override {
        if (beforeTask) beforeTask();
        return task();
    }
    std::function<void()> beforeTask;
};

class RenderNumbers : public testing::Test {
protected:
    RenderNumbers() {
        const auto count = [this](DisplayConfig&, DisplayConfigUserData&) { return ++requests; };
        bus.registObserver(DCFG_RENDER_REQUEST, count, nullptr, DCFG_FLAG_EVENT);
    }
    void make() {
        view = std::make_shared<ProbeView>(&bus, &thread, motion);
        view->init(ZETShow::defaultColor);
    }
    /// The calls since the last time.
    std::vector<std::string> calls() { return std::exchange(motion->calls, {}); }
    /// The calls of all steps of inertia.
    std::vector<std::string> inertia() {
        for (std::size_t before = 1; before != motion->calls.size();) {
            before = motion->calls.size();
            motion->stepFling();
        }
        return calls();
    }
    template <typename Record>
    void setInPlace(std::int64_t id, const Record& record) {
        bus.setConfig(id, static_cast<const void*>(&record));
    }

    DisplayConfig bus;
    ProbeThread thread;
    const std::shared_ptr<ProbeMotion> motion = std::make_shared<ProbeMotion>();
    std::shared_ptr<ProbeView> view;
    int requests = 0;
};

TEST_F(RenderNumbers, turnsGesturesIntoCallsAndRequests) {
    make();
    setInPlace(DCFG_DOUBLE_TAP, TouchPoint{5, 6});
    setInPlace(DCFG_TOUCH_UP, TouchPoint{3, 4});
    setInPlace(DCFG_DRAG, DragPoints{1, 2, 3, 4});
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_THAT(calls(), ElementsAre("double tap 5 6", "up 3 4", "drag 1 2 3 4", "pinch 1.5"));
    EXPECT_EQ(requests, 4);
    setInPlace(DCFG_TOUCH_DOWN, TouchPoint{3, 4});
    EXPECT_EQ(requests, 4) << "a gesture that the motion doesn't know";
    motion->result = false;
    bus.setConfig(DCFG_PINCH, 1.5f);
    EXPECT_EQ(requests, 4) << "a gesture that the motion refuses";
}

TEST_F(RenderNumbers, ignoresWhatIsNoNumberAndNoRecord) {
    make();
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        const Fling fling{bad, 1};
        const AutoRotate rotate{1, bad};
        setInPlace(DCFG_DRAG, DragPoints{1, 2, bad, 4});
        bus.setConfig(DCFG_PINCH, bad);
        bus.setConfig(DCFG_FLING, &fling);
        bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
    }
    for (const std::int64_t id : std::initializer_list<std::int64_t>{DCFG_DOUBLE_TAP, DCFG_DRAG, DCFG_FLING,
                                                                     DCFG_AUTO_ROTATE, DCFG_SCENE_BACKDROP}) {
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
    motion->stepFling();
    EXPECT_THAT(calls(), ElementsAre("rotate 0 2", "fling 0.9 0"));
    bus.setConfig(DCFG_AUTO_ROTATE, &on);
    EXPECT_THAT(inertia(), ElementsAre("rotate 1 3"));
}

TEST_F(RenderNumbers, hearsEarlierSettingsAndNothingWhenTheViewIsGone) {
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
    view.reset();
    bus.setConfig(DCFG_OPENING_FLIGHT, 0);
    bus.setConfig(DCFG_PINCH, 2.0f);
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(requests, 0);
}

TEST_F(RenderNumbers, aViewThatDiesBeforeItsTaskIsLeftAlone) {
    make();
    bus.setConfig(DCFG_FACE_OPTION, 1);
    EXPECT_EQ(view->worked, 1);
    EXPECT_EQ(requests, 1);
    thread.beforeTask = [this] { view.reset(); };
    bus.setConfig(DCFG_FACE_OPTION, 2);
    EXPECT_EQ(requests, 1);
}

TEST_F(RenderNumbers, aLateCallFindsTheDoorOfAThreadThatIsGone) {
    // An observer that comes before the view's own holds the delivery back until all is gone.
    auto gone = std::make_unique<ProbeThread>();
    int posted = 0;
    gone->beforeTask = [&posted] { ++posted; };
    bus.setConfig(DCFG_FACE_OPTION, 1);
    const auto drop = [&](DisplayConfig&, DisplayConfigUserData&) {
        if (!gone) return 0;
        gone->door()->close();
        gone.reset();
        return 0;
    };
    bus.registObserver(DCFG_FACE_OPTION, drop, nullptr, DCFG_FLAG_VALUE);
    view = std::make_shared<ProbeView>(&bus, gone.get(), motion);
    view->init(ZETShow::defaultColor);
    EXPECT_EQ(posted, 1) << "the replay";
    bus.setConfig(DCFG_FACE_OPTION, 2);
    EXPECT_EQ(posted, 1);
}

}  // namespace
}  // namespace zet::test
