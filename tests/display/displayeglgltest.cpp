// What remains when a call to EGL fails, and what is tried again.

#include <mutex>
#include <thread>

#include "support/displaytest.h"

namespace zet::test {
namespace {

const Yuv red{110, 110, 190};

class EglFailure : public DisplayTest {
protected:
    EglFailure() {
        global.setErrorCallback([this](int code, const std::string& error, const std::string& file, int line) {
            EXPECT_EQ(code, 3);
            EXPECT_EQ(error, "MERR_UNSUPPORTED");
            EXPECT_TRUE(file.ends_with("displayegl.cpp")) << file;
            EXPECT_GT(line, 0);
            ++reports;
        });
        bus.registObserver(
            DCFG_GL_CONTEXT,
            [this](DisplayConfig&, DisplayConfigUserData& delivery) {
                context = delivery.getData();
                return 0;
            },
            nullptr, DCFG_FLAG_VALUE);
    }
    ~EglFailure() override { stop(); }

    /// Returns when the render thread stands in one of its waits.
    void rest() { bus.setConfig(DCFG_SNAP, nullptr); }
    void setFrame() { bus.setConfig(DCFG_YUV_FRAME, &frame.record); }
    bool isShown() {
        const Picture picture = shown(frame);
        return near(picture.at(32, 32), toColor(red), 1);
    }

    const Frame frame{64, 64, red};
    std::atomic<int> reports = 0;
    std::atomic<void*> context = nullptr;
};

struct ContextCase {
    const char* name;
    EglCall call;
    bool isReported;
};

class EglFailureOnTheWayToTheContext : public EglFailure, public testing::WithParamInterface<ContextCase> {
protected:
    void expectTries(int tries, const char* after) {
        EXPECT_EQ(eglCalls(GetParam().call), tries) << after;
        EXPECT_EQ(reports, GetParam().isReported ? tries : 0) << after;
        EXPECT_EQ(context, nullptr) << after;
    }
};

TEST_P(EglFailureOnTheWayToTheContext, IsTriedAgainWithEachWindowAndFrame) {
    window.emplace(64, 64);
    failEgl(GetParam().call);
    start();
    rest();
    expectTries(1, "at the start");
    bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
    rest();
    expectTries(1, "after a request");
    bus.setConfig(DCFG_RENDER_MODE, 0);
    expectTries(2, "after a mode");
    setFrame();
    setFrame();
    expectTries(4, "after two frames");
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_EQ(eglCalls(EglCall::createWindowSurface), 1) << "called all the same";
    // Without a context but with a display and a config there is a surface, and the view's try comes on top.
    expectTries(GetParam().call == EglCall::createContext ? 6 : 5, "after a window");
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());

    resetEgl();
    setFrame();
    EXPECT_NE(context, nullptr) << "the next frame finds the context";
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_TRUE(isShown());
    display.reset();
    EXPECT_EQ(context, nullptr);
    EXPECT_EQ(eglCalls(EglCall::terminate), 1);
}

TEST_P(EglFailureOnTheWayToTheContext, EndsWell) {
    failEgl(GetParam().call);
    start();
    rest();
    display.reset();
    const bool initialized = GetParam().call > EglCall::initialize;
    EXPECT_EQ(eglCalls(EglCall::terminate), initialized ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Egl, EglFailureOnTheWayToTheContext,
                         testing::Values(ContextCase{"getDisplay", EglCall::getDisplay, true},
                                         ContextCase{"initialize", EglCall::initialize, false},
                                         ContextCase{"chooseConfig", EglCall::chooseConfig, false},
                                         ContextCase{"createContext", EglCall::createContext, false}),
                         [](const auto& suite) { return suite.param.name; });

TEST_F(EglFailure, OfTheSurfaceLeavesNoneUntilTheNextWindow) {
    start(64, 64);
    EXPECT_TRUE(isShown());
    failEgl(EglCall::createWindowSurface);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    const int tries = eglCalls(EglCall::createWindowSurface), swaps = eglCalls(EglCall::swapBuffers);
    setFrame();
    setFrame();
    rest();
    EXPECT_EQ(eglCalls(EglCall::createWindowSurface), tries);
    EXPECT_EQ(eglCalls(EglCall::swapBuffers), swaps);
    resetEgl();
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_TRUE(isShown());
}

TEST_F(EglFailure, ToMakeCurrentIsTriedAgainWithTheSwapInterval) {
    window.emplace(64, 64);
    start();
    rest();
    failEgl(EglCall::makeCurrent);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 2) << "once for the surface, once for the view";
    EXPECT_EQ(eglCalls(EglCall::swapInterval), 1) << "the second sets the interval";
    setFrame();
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 3);
    redraw();  // tries, and swaps whether it helped or not
    EXPECT_GT(eglCalls(EglCall::makeCurrent), 3);

    resetEgl();
    setFrame();
    redraw();
    float none = 0;
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 1) << "current again";
    EXPECT_EQ(bus.readConfig(DCFG_SCALE, none), -1) << "but without a view";
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_TRUE(isShown());
    EXPECT_EQ(eglCalls(EglCall::swapInterval), 1) << "not in the ordinary course";
}

TEST_F(EglFailure, ToAskTheSizeSkipsTheDraw) {
    start(64, 64);
    rest();
    failEgl(EglCall::querySurface);
    setFrame();
    bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
    while (eglCalls(EglCall::querySurface) < 4) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(eglCalls(EglCall::swapBuffers), 0);
    resetEgl();
    redraw();
    EXPECT_TRUE(near(window->grab().at(32, 32), toColor(red), 1)) << "the next draw tries again";
}

TEST_F(EglFailure, ToSwapChangesNothing) {
    start(64, 64);
    failEgl(EglCall::swapBuffers);
    EXPECT_FALSE(isShown());
    resetEgl();
    EXPECT_TRUE(isShown());
}

}  // namespace
}  // namespace zet::test
