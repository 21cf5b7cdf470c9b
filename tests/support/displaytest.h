#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "support/eglcalls.h"
#include "support/picture.h"
#include "support/window.h"
#include "zet/zet.h"

namespace zet::test {

/// A player of one display: its bus, its window, and what the window shows.
class DisplayTest : public testing::Test {
protected:
    void TearDown() override { stop(); }

    void start() { display = CreateZETDisplay(&bus, &global); }
    /// A display with a window, in the view that was set before; the flat one by default.
    void start(int width, int height) {
        window.emplace(width, height);
        start();
        setWindow();
    }
    void setWindow() { bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle()); }
    /// Call it at the end of a test whose hooks use its local variables.
    void stop() {
        display.reset();
        resetEgl();
    }
    /// Waits until everything set so far is drawn: the second of two further draws began after it was set.
    void redraw() { requestAndWait(2); }
    /// Returns when the render thread is in one of its waits. A draw that is still owed is dropped.
    void rest() { bus.setConfig(DCFG_SNAP, nullptr); }
    /// Makes at least 30 draws of what has been set, until none is owed.
    void drawOut() {
        requestAndWait(1);  // this draw may have begun before
        requestAndWait(30);
        rest();  // drops a draw that is still owed
    }
    /// Acts right after a draw, and again if another draw came during the act.
    template <typename Act>
    void actBetweenDraws(const Act& act) {
        for (int swaps = -1; swaps != swapsEnded();) {
            redraw();
            swaps = swapsEnded();
            act();
        }
    }
    /// The window with `frame` in it.
    Picture shown(const Frame& frame) {
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        return shown();
    }
    Picture shown() {
        requestAndWait(3);  // a swap may end before its picture is in the window; the picture before it is there
        return window->grab();
    }
    float scale() {
        float value = 0;
        EXPECT_EQ(bus.readConfig(DCFG_SCALE, value), 0);
        return value;
    }

    DisplayConfig bus;
    GlobalConfiger global;
    std::optional<Window> window;
    std::shared_ptr<DisplayConfigKit> display;

private:
    void requestAndWait(int count) {
        const int before = swapsEnded();
        bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        ASSERT_TRUE(waitForSwaps(count, before)) << "no draws for 10 s";
    }
};

}  // namespace zet::test
