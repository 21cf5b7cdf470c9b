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
    /// A display with a window, in the view that was set before, at first the flat one.
    void start(int width, int height) {
        window.emplace(width, height);
        start();
        setWindow();
    }
    void setWindow() { bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle()); }
    /// At the end of a test whose hooks use its local variables.
    void stop() {
        display.reset();
        resetEgl();
    }
    /// Waits until everything that has been set by now is drawn: of two further draws the second began after it.
    void redraw() { requestAndWait(2); }
    /// Returns when the render thread stands in one of its waits. What was about to be drawn is put off.
    void rest() { bus.setConfig(DCFG_SNAP, nullptr); }
    /// Draws at least 30 times what has been set by now, and until no draw is owed.
    void drawOut() {
        requestAndWait(1);  // this draw may have begun before
        requestAndWait(30);
        rest();  // a turn that is left has been taken by now, and goes
    }
    /// Acts just behind a draw, and again if another one comes before it is done.
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
        requestAndWait(3);  // a swap may end before its picture stands in the window; that of the one before does
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
