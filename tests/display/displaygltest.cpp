// Frames, windows and modes: what the display takes, keeps and shows.

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "render/render.h"
#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

const Yuv red{110, 110, 190}, blue{90, 190, 110};

class DisplayGl : public DisplayTest {
protected:
    void setMode(int mode) { bus.setConfig(DCFG_RENDER_MODE, mode); }
    void setFrame(const Frame& frame) { bus.setConfig(DCFG_YUV_FRAME, &frame.record); }
    bool hasView() {
        float value = 0;
        return bus.readConfig(DCFG_SCALE, value) == 0;
    }
    void expectShown(const Picture& picture, const Yuv& yuv, const std::string& name) {
        for (int y = 0; y < picture.height; y += 7) {
            for (int x = 0; x < picture.width; x += 7) {
                ASSERT_TRUE(near(picture.at(x, y), toColor(yuv), 1))
                    << name << ' ' << x << ' ' << y << picture.at(x, y);
            }
        }
    }

    const Frame redFrame{64, 64, red}, blueFrame{64, 64, blue};
};

TEST_F(DisplayGl, refusesFramesThatCantBeReadWhole) {
    static constexpr int absurd = 1 << 30, kind = AI_KIND_FACES;
    const struct {
        const char* name;
        void (*spoil)(YUV420PData&);
    } cases[] = {
        {"no V", [](YUV420PData& frame) { frame.v = nullptr; }},
        {"width below 0", [](YUV420PData& frame) { frame.width = -64; }},
        {"height beyond GL", [](YUV420PData& frame) { frame.height = absurd; }},
        {"width beyond GL", [](YUV420PData& frame) { frame.width = frame.yLineSize = frame.uvLineSize = absurd; }},
        {"Y lines under the width", [](YUV420PData& frame) { frame.yLineSize = 60; }},
        {"UV lines under half the width", [](YUV420PData& frame) { frame.uvLineSize = 30; }},
        {"odd chroma", [](YUV420PData& frame) { frame.uvLineSize = 33, frame.height = 63; }},
        {"Y lines that GL would read past", [](YUV420PData& frame) { frame.yLineSize = 65; }},
        {"a count without items", [](YUV420PData& frame) { frame.aiCount = 1, frame.aiKind = &kind; }},
        {"items without a kind", [](YUV420PData& frame) { frame.aiCount = 1, frame.aiItems = &kind; }},
        {"fewer than none", [](YUV420PData& frame) { frame.aiCount = -1, frame.aiItems = frame.aiKind = &kind; }},
    };
    const CallLog log;
    start(64, 64);
    expectShown(shown(redFrame), red, "a good one");
    for (const auto& [name, spoil] : cases) {
        const int before = log.count("refused");
        // The spoilt planes are too short for what the record says, so that a reader of them is caught.
        Frame bad(64, 2, blue);
        bad.record.height = 64;
        spoil(bad.record);
        expectShown(shown(bad), red, name);
        expectShown(shown(bad), red, name);
        EXPECT_EQ(log.count("refused"), before + 1) << name << ": said once";
        expectShown(shown(redFrame), red, name);
    }
    bus.setConfig(DCFG_YUV_FRAME, nullptr);
    expectShown(shown(), red, "no record");
    expectShown(shown(Frame(128, 128, blue)), blue, "another size");
}

TEST_F(DisplayGl, dropsAFrameWhileTheLastOneIsUndrawn) {
    start(64, 64);
    expectShown(shown(redFrame), red, "alone");
    actBetweenDraws([this] {
        setFrame(blueFrame);
        setFrame(redFrame);
    });
    expectShown(shown(), blue, "behind another one");
}

TEST_F(DisplayGl, drawsThirtyTimesForARequestAndOnceForAFrameAtItsPace) {
    start(64, 64);
    shown(redFrame);
    drawOut();
    const auto request = [this] { bus.setConfig(DCFG_RENDER_REQUEST, nullptr); };
    std::vector<Clock::time_point> draws;
    const SwapHook hook([&] {
        draws.push_back(Clock::now());
        if (draws.size() == 31 + 10) request();  // the tenth draw of the second request
    });
    const auto drawsOf = [](int expected, const auto& set) {
        const int before = swapsEnded();
        set();
        EXPECT_TRUE(waitForSwaps(expected, before));
        std::this_thread::sleep_for(60ms);  // time enough for one too many
        return swapsEnded() - before;
    };
    EXPECT_EQ(drawsOf(30, request), 30);
    EXPECT_EQ(drawsOf(1, [this] { setFrame(blueFrame); }), 1);
    EXPECT_EQ(drawsOf(40, request), 40) << "requests don't add up";
    stop();
    for (std::size_t i = 1; i < draws.size(); ++i) EXPECT_GE(draws[i] - draws[i - 1], 17ms);
}

TEST_F(DisplayGl, takesWindowsAsTheyCome) {
    start();
    bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    setFrame(redFrame);
    window.emplace(64, 64);
    setWindow();
    redraw();  // without a picture
    expectShown(shown(redFrame), red, "first");

    const CallLog log;
    setWindow();
    EXPECT_EQ(log.count("~Render _program"), 1) << "the same handle rebuilds the view";
    setFrame(redFrame);  // not drawn, and lost with its window
    setWindow();
    expectShown(shown(blueFrame), blue, "again");

    Window other(96, 96, 200);
    bus.setConfig(DCFG_WINDOW_INSTANCE, other.handle());
    shown(redFrame);
    expectShown(other.grab(), red, "another window");
    expectShown(window->grab(), blue, "the old one keeps its picture");
    other.resize(200, 160);
    shown(redFrame);
    const Picture wide = other.grab();
    EXPECT_TRUE(near(wide.at(10, 80), {}, 0)) << "bars beside the picture after a new size";
    EXPECT_TRUE(near(wide.at(100, 5), toColor(red), 1));

    bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    setFrame(redFrame);
    setWindow();
    expectShown(shown(redFrame), red, "back");
}

TEST_F(DisplayGl, outlivesItsWindow) {
    const struct {
        const char* name;
        void (*spoil)(Window&);
    } cases[] = {{"resized to nothing", [](Window& gone) { gone.resize(1, 1); }},
                 {"unmapped", [](Window& gone) { gone.unmap(); }},
                 {"destroyed", [](Window& gone) { gone.destroy(); }}};
    start();
    rest();
    for (const auto& [name, spoil] : cases) {
        window.emplace(64, 64);
        setWindow();
        expectShown(shown(redFrame), red, name);
        spoil(*window);
        setFrame(blueFrame);
        bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        std::this_thread::sleep_for(100ms);  // its draws may all fail before the swap
    }
    display.reset();
}

TEST_F(DisplayGl, changesTheView) {
    const Frame wide(96, 48, [](int x, int) { return x < 48 ? red : blue; });
    const auto showsBlue = [](const Picture& picture) {
        return std::any_of(picture.pixels.begin(), picture.pixels.end(),
                           [](const Color& color) { return color.b > color.r + 20; });
    };
    setMode(RENDER_MODE_FOUR_PANE);
    start(64, 64);
    EXPECT_FALSE(showsBlue(shown(wide))) << "a mode that was set before the display takes the left square";
    setMode(RENDER_MODE_WALL_180);
    EXPECT_TRUE(showsBlue(shown())) << "the frame outlives the view, and this one shows the whole of it";
    setMode(RENDER_MODE_WALL_ONE);
    EXPECT_FALSE(showsBlue(shown()));
    setMode(RENDER_MODE_FLAT);
    EXPECT_TRUE(showsBlue(shown()));
    bus.setConfig(DCFG_PINCH, 2.0f);
    EXPECT_NEAR(scale(), 1.055, 1e-6);
    setMode(RENDER_MODE_FLAT);
    EXPECT_EQ(scale(), 1.0f) << "the same mode is a new view all the same";
    for (const int unknown : {-1, 11}) {
        setMode(unknown);
        shown(redFrame);  // swaps only
        setMode(RENDER_MODE_FLAT);
        expectShown(shown(), red, "the next mode brings a view back, with the frame that came meanwhile");
    }
}

TEST_F(DisplayGl, showsColorsAsTheyAreCoded) {
    // Red as BT.709 in limited range has it: Y 219 * 0.2126 + 16, U 128 - 224 * 0.2126 / 1.8556, V 128 + 112.
    const Yuv codedRed{63, 102, 240};
    const Color pure{255, 0, 0};
    start(64, 64);
    const CallLog log;
    const auto expectRed = [&](const FrameColor& color, bool isRed, const char* when) {
        bus.setConfig(DCFG_FRAME_COLOR, &color);
        for (const RenderMode mode : {RENDER_MODE_FLAT, RENDER_MODE_FOUR_PANE}) {
            setMode(mode);
            const Color seen = shown().at(20, 20);
            EXPECT_EQ(near(seen, pure, 2), isRed) << when << ", mode " << mode << seen;
            std::vector<std::uint8_t> bytes(64 * 64 * 4);
            SnapData snap{1, bytes.data(), 64 * 64 * 4};
            bus.setConfig(DCFG_SNAP, &snap);
            EXPECT_EQ(near({1.0 * bytes[0], 1.0 * bytes[1], 1.0 * bytes[2]}, pure, 2), isRed) << when << ", snapshot";
        }
    };
    shown(Frame(64, 64, codedRed));
    expectRed({COLOR_MATRIX_UNSPECIFIED, 0}, false, "the module's own");
    expectRed({COLOR_MATRIX_BT709, 0}, true, "without a new frame");
    expectRed({77, 0}, true, "refused");
    EXPECT_EQ(log.count("refused matrix: 77"), 1);
    setWindow();
    shown(Frame(64, 64, codedRed));
    expectRed({COLOR_MATRIX_BT709, 0}, true, "in another window");
    expectRed({COLOR_MATRIX_UNSPECIFIED, 1}, false, "back");
}

TEST_F(DisplayGl, replacesTheViewAtTheEndOfItsDraw) {
    // The request of a view that turns by itself reaches an observer of the player at the end of a draw.
    const auto player = std::this_thread::get_id();
    const auto replace = [=, this](DisplayConfig&, DisplayConfigUserData&) {
        if (std::this_thread::get_id() != player) setMode(RENDER_MODE_FLAT);
        return 0;
    };
    const AutoRotate on{1, 1};
    bus.setConfig(DCFG_AUTO_ROTATE, &on);
    bus.registObserver(DCFG_RENDER_REQUEST, replace, nullptr, DCFG_FLAG_EVENT);
    setMode(RENDER_MODE_HALF_SPHERE);
    start(64, 64);
    setFrame(redFrame);
    while (!hasView()) std::this_thread::yield();
    expectShown(shown(), red, "flat");
}

TEST_F(DisplayGl, leavesTheOtherDisplaysOfTheProcessAlone) {
    DisplayConfig otherBus;
    const Window otherWindow(64, 64, 200);
    start(64, 64);
    auto other = CreateZETDisplay(&otherBus, &global);
    otherBus.setConfig(DCFG_WINDOW_INSTANCE, otherWindow.handle());
    otherBus.setConfig(DCFG_YUV_FRAME, &blueFrame.record);
    expectShown(shown(redFrame), red, "first");
    display.reset();
    EXPECT_EQ(eglCalls(EglCall::terminate), 0);
    const int before = swapsEnded();
    otherBus.setConfig(DCFG_RENDER_REQUEST, nullptr);
    ASSERT_TRUE(waitForSwaps(3, before));
    expectShown(otherWindow.grab(), blue, "goes on");
    start();
    other.reset();
    expectShown(shown(redFrame), red, "came later");
    display.reset();
    EXPECT_EQ(eglCalls(EglCall::terminate), 1) << "the last one out";
    EXPECT_EQ(CreateZETDisplay(nullptr, &global), nullptr) << "without a bus";
}

TEST_F(DisplayGl, endsInOrder) {
    const auto note = [](DisplayConfig&, DisplayConfigUserData& delivery) {
        ZETLog::instance().error(delivery.getData() ? "context" : "no context");
        return 0;
    };
    bus.registObserver(DCFG_GL_CONTEXT, note, nullptr, DCFG_FLAG_VALUE);
    start(64, 64);
    rest();
    const CallLog log;
    display.reset();
    EXPECT_THAT(log.lines(),
                testing::ElementsAre("Display::~Display begin", "Display::unInit begin", "no context", "~Render",
                                     "~Render _program", "Display::unInit eglDestroySurface 1",
                                     "Display::unInit eglDestroyContext 1", "Display::unInit eglTerminate 1",
                                     "Display::unInit eglReleaseThread 1", "Display::unInit end", "Display::run end",
                                     "Display::~Display end"));
}

}  // namespace
}  // namespace zet::test
