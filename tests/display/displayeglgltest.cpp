// After a failed call to EGL: what remains, and what is tried again.

#include <atomic>
#include <thread>

#include "support/displaytest.h"

namespace zet::test {
namespace {

const Yuv red{110, 110, 190};

class EglFailure : public DisplayTest {
protected:
    EglFailure() {
        global.setErrorCallback([this](int code, const std::string& error, const std::string& file, int line) {
            reports += code == 3 && error == "MERR_UNSUPPORTED" && file.ends_with("displayegl.cpp") && line > 0;
        });
        const auto note = [this](DisplayConfig&, DisplayConfigUserData& delivery) {
            context = delivery.getData();
            return 0;
        };
        bus.registObserver(DCFG_GL_CONTEXT, note, nullptr, DCFG_FLAG_VALUE);
    }
    ~EglFailure() override { stop(); }

    void setFrame() { bus.setConfig(DCFG_YUV_FRAME, &frame.record); }
    bool isShown() { return near(shown(frame).at(32, 32), toColor(red), 1); }

    const Frame frame{64, 64, red};
    std::atomic<int> reports = 0;
    std::atomic<void*> context = nullptr;
};

TEST_F(EglFailure, onTheWayToTheContextIsTriedAgainWithEachWindowAndFrame) {
    const std::pair<const char*, EglCall> cases[] = {{"getDisplay", EglCall::getDisplay},
                                                     {"initialize", EglCall::initialize},
                                                     {"chooseConfig", EglCall::chooseConfig},
                                                     {"createContext", EglCall::createContext}};
    for (const auto& [name, call] : cases) {
        SCOPED_TRACE(name);
        const auto expectTries = [&, call = call](int tries, const char* after) {
            EXPECT_EQ(eglCalls(call), tries) << after;
            EXPECT_EQ(reports.exchange(0), call == EglCall::getDisplay ? tries : 0) << after;
            EXPECT_EQ(context, nullptr) << after;
            resetEgl();
            failEgl(call);
        };
        bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
        window.emplace(64, 64);
        failEgl(call);
        start();
        display.reset();
        EXPECT_EQ(eglCalls(EglCall::terminate), call > EglCall::initialize ? 1 : 0) << "ends well";
        expectTries(1, "at the start");
        start();
        rest();
        expectTries(1, "at the start");
        setFrame();
        setFrame();
        expectTries(2, "after two frames");
        setWindow();
        EXPECT_EQ(eglCalls(EglCall::createWindowSurface), 1) << "called all the same";
        // Without a context but with a display and a config there is a surface, and the view's try comes on top.
        expectTries(call == EglCall::createContext ? 2 : 1, "after a window");

        resetEgl();
        setFrame();
        EXPECT_NE(context, nullptr) << "the next frame finds the context";
        setWindow();
        EXPECT_TRUE(isShown());
        display.reset();
        EXPECT_EQ(context, nullptr);
        EXPECT_EQ(eglCalls(EglCall::terminate), 1);
        resetEgl();
    }
}

TEST_F(EglFailure, ofTheSurfaceLeavesNoneUntilTheNextWindow) {
    start(64, 64);
    EXPECT_TRUE(isShown());
    failEgl(EglCall::createWindowSurface);
    setWindow();
    const int tries = eglCalls(EglCall::createWindowSurface), swaps = eglCalls(EglCall::swapBuffers);
    setFrame();
    setFrame();
    rest();
    EXPECT_EQ(eglCalls(EglCall::createWindowSurface), tries);
    EXPECT_EQ(eglCalls(EglCall::swapBuffers), swaps);
    resetEgl();
    setWindow();
    EXPECT_TRUE(isShown());
}

TEST_F(EglFailure, toMakeCurrentIsTriedAgainWithTheSwapInterval) {
    window.emplace(64, 64);
    start();
    rest();
    failEgl(EglCall::makeCurrent);
    setWindow();
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 2) << "once for the surface, once for the view";
    EXPECT_EQ(eglCalls(EglCall::swapInterval), 1) << "the second sets the interval";
    setFrame();
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 3);
    drawOut();  // each draw tries, and swaps even if the try fails
    EXPECT_GT(eglCalls(EglCall::makeCurrent), 33);

    resetEgl();
    setFrame();
    redraw();
    float none = 0;
    EXPECT_EQ(eglCalls(EglCall::makeCurrent), 1) << "current again";
    EXPECT_EQ(bus.readConfig(DCFG_SCALE, none), -1) << "but without a view";
    setWindow();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(eglCalls(EglCall::swapInterval), 1) << "not in the ordinary course";
}

TEST_F(EglFailure, toAskTheSizeSkipsTheDrawAndToSwapChangesNothing) {
    start(64, 64);
    failEgl(EglCall::querySurface);
    setFrame();
    bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
    while (eglCalls(EglCall::querySurface) < 4) std::this_thread::yield();
    EXPECT_EQ(eglCalls(EglCall::swapBuffers), 0);
    resetEgl();
    EXPECT_TRUE(isShown()) << "the next draw tries again";

    failEgl(EglCall::swapBuffers);
    const Picture kept = shown(Frame(64, 64, {90, 190, 110}));
    EXPECT_TRUE(near(kept.at(32, 32), toColor(red), 1)) << "the picture before";
    resetEgl();
    EXPECT_FALSE(near(shown().at(32, 32), toColor(red), 1));
}

}  // namespace
}  // namespace zet::test
