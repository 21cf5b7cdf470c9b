// Frames, windows and modes: what the display takes, keeps and shows.

#include <GLES2/gl2.h>
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "support/calllog.h"
#include "support/displaytest.h"
#include "support/probeview.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ZETShow::CropParam;
using ZETShow::Texture;

const Yuv red{110, 110, 190}, blue{90, 190, 110};

class DisplayGl : public DisplayTest {
protected:
    ~DisplayGl() override { useProbes(nullptr); }

    void expectShown(const Picture& picture, const Yuv& yuv, const std::string& name = {}) {
        const Color color = toColor(yuv);
        for (int y = 0; y < picture.height; y += 7) {
            for (int x = 0; x < picture.width; x += 7) {
                ASSERT_TRUE(near(picture.at(x, y), color, 1)) << name << ' ' << x << ' ' << y << picture.at(x, y);
            }
        }
    }
};

TEST_F(DisplayGl, needsABus) {
    EXPECT_EQ(CreateZETDisplay(nullptr, &global), nullptr);
}

TEST_F(DisplayGl, cutsTheLensRegion) {
    const struct {
        const char* name;
        int width, height, lineSize, mode;
        std::vector<int> region;
        CropParam crop;
    } cases[] = {
        {"no region", 160, 120, 160, 1, {}, {0, 0, 120, 120}},
        {"no region, not square", 160, 120, 160, 10, {}, {0, 0, 160, 120}},
        {"whole", 1000, 1000, 1000, 1, {5000, 5000, 5000, 5000}, {0, 0, 1000, 1000}},
        {"whole with padding", 1000, 1000, 1024, 1, {5000, 5000, 5000, 5000}, {0, 0, 975, 1000}},
        {"no region with padding, not square", 200, 100, 256, 10, {}, {0, 0, 155, 100}},
        {"upright with padding", 120, 160, 128, 1, {}, {0, 0, 111, 120}},
        {"padding beside a smaller region", 1000, 1000, 1024, 1, {5000, 5000, 4000, 4000}, {100, 100, 800, 800}},
        {"half a pixel on the centre only", 1000, 1000, 1000, 1, {1236, 1236, 1236, 1236}, {1, 1, 246, 246}},
        {"over the left edge", 1000, 1000, 1000, 1, {2000, 5000, 3000, 4000}, {0, 100, 600, 600}},
        {"over the top edge, not square", 1000, 1000, 1000, 10, {5000, 2000, 4000, 3000}, {100, 0, 800, 600}},
        {"no radius", 1000, 1000, 1000, 1, {5000, 2500, 0, 0}, {500, 250, 1000, 1000}},
    };
    CropParam seen;
    useProbes([&](const Texture& texture) { seen = texture.cropParam; });
    start(64, 64);
    bus.setConfig(DCFG_RENDER_MODE, 1);
    int mode = 1;
    for (const auto& one : cases) {
        if (one.mode != mode) bus.setConfig(DCFG_RENDER_MODE, mode = one.mode);
        Frame frame(
            one.width, one.height, [](int, int) { return red; }, one.lineSize);
        if (!one.region.empty()) frame.record.lensRegion = one.region.data();
        {
            const auto held = holdProbes();
            seen = {};
        }
        shown(frame);
        const auto held = holdProbes();
        EXPECT_EQ(seen, one.crop) << one.name << ": " << seen.x << ' ' << seen.y << ' ' << seen.width << ' '
                                  << seen.height;
    }
    stop();
}

TEST_F(DisplayGl, copiesWhatWasFoundInTheFrame) {
    std::vector<std::string> faces, rects;
    useProbes([&](const Texture& texture) {
        faces.clear();
        rects.clear();
        const auto text = [](auto... numbers) { return ((std::to_string(numbers) + ' ') + ...); };
        for (const auto& f : texture.faces)
            faces.push_back(f.name + ' ' + text(f.gender, f.age, f.x, f.y, f.width, f.height));
        for (const auto& r : texture.rects) rects.push_back(text(r.x, r.y, r.width, r.height));
    });
    start(64, 64);
    bus.setConfig(DCFG_RENDER_MODE, 1);
    FaceItem items[2] = {{9, 1, 30, 1, 2, 3, 4, "Ann"}, {9, 0, 50, -5, 6, 7, 8, {}}};
    std::fill_n(items[1].name, 32, 'b');  // no NUL
    const RectItem rect{10, 20, 30, 40, 9};
    const int faceKind = 1, rectKind = 2, otherKind = 3;
    Frame frame(64, 64, red);
    const auto set = [&](int count, const void* data, const int* kind) {
        frame.record.aiCount = count;
        frame.record.aiItems = data;
        frame.record.aiKind = kind;
        shown(frame);
    };
    const auto expectFaces = [&] {
        const auto held = holdProbes();
        EXPECT_THAT(faces, ElementsAre("Ann 1 30 1 2 3 4 ", std::string(32, 'b') + " 0 50 -5 6 7 8 "));
        EXPECT_THAT(rects, IsEmpty());
    };
    set(2, items, &faceKind);
    expectFaces();
    set(1, nullptr, &faceKind);
    expectFaces();  // a count without items is refused, and so is one without a kind, and less than none
    set(1, items, nullptr);
    set(-1, items, &faceKind);
    expectFaces();
    const auto expectRects = [&](const auto& expected) {
        const auto held = holdProbes();
        EXPECT_THAT(rects, expected);
        EXPECT_THAT(faces, IsEmpty());
    };
    set(1, &rect, &rectKind);
    expectRects(ElementsAre("10 20 30 40 "));
    set(1, &rect, &otherKind);
    expectRects(IsEmpty());
    set(2, items, &faceKind);
    set(0, items, nullptr);
    expectRects(IsEmpty());
    stop();
}

TEST_F(DisplayGl, refusesFramesThatCantBeReadWhole) {
    const Frame good(64, 64, red);
    constexpr int absurd = 1 << 30;
    const struct {
        const char* name;
        void (*spoil)(YUV420PData&);
    } cases[] = {
        {"no Y", [](YUV420PData& frame) { frame.y = nullptr; }},
        {"no U", [](YUV420PData& frame) { frame.u = nullptr; }},
        {"no V", [](YUV420PData& frame) { frame.v = nullptr; }},
        {"width 0", [](YUV420PData& frame) { frame.width = 0; }},
        {"width below 0", [](YUV420PData& frame) { frame.width = -64; }},
        {"height 0", [](YUV420PData& frame) { frame.height = 0; }},
        {"height below 0", [](YUV420PData& frame) { frame.height = -2; }},
        {"height beyond GL", [](YUV420PData& frame) { frame.height = absurd; }},
        {"width beyond GL", [](YUV420PData& frame) { frame.width = frame.yLineSize = frame.uvLineSize = absurd; }},
        {"Y lines under the width", [](YUV420PData& frame) { frame.yLineSize = 60; }},
        {"UV lines under half the width", [](YUV420PData& frame) { frame.uvLineSize = 30; }},
        {"odd chroma", [](YUV420PData& frame) { frame.uvLineSize = 33, frame.height = 63; }},
        {"Y lines that GL would read past", [](YUV420PData& frame) { frame.yLineSize = 65; }},
    };
    CallLog log;
    start(64, 64);
    expectShown(shown(good), red);
    for (const auto& one : cases) {
        const int before = log.count("refused");
        // The spoilt planes are too short for what the record says, so that a reader of them is caught.
        Frame bad(64, 2, blue);
        bad.record.height = 64;
        one.spoil(bad.record);
        expectShown(shown(bad), red, one.name);
        expectShown(shown(bad), red, one.name);
        EXPECT_EQ(log.count("refused"), before + 1) << one.name << ": said once";
        expectShown(shown(good), red, one.name);
    }
    bus.setConfig(DCFG_YUV_FRAME, nullptr);
    expectShown(shown(), red, "no record");
    expectShown(shown(Frame(128, 128, blue)), blue, "another size");
}

TEST_F(DisplayGl, dropsAFrameWhileTheLastOneIsUndrawn) {
    const Frame first(64, 64, red), second(64, 64, blue);
    start(64, 64);
    for (int swaps = -1; swaps != eglCalls(EglCall::swapBuffers);) {
        redraw();  // both sets may well fall into the 17 ms until the next draw
        swaps = eglCalls(EglCall::swapBuffers);
        bus.setConfig(DCFG_YUV_FRAME, &first.record);
        bus.setConfig(DCFG_YUV_FRAME, &second.record);
    }
    expectShown(shown(), red);
    expectShown(shown(second), blue);
}

TEST_F(DisplayGl, drawsThirtyTimesForARequestAndOnceForAFrameAtItsPace) {
    start(64, 64);
    shown(Frame(64, 64, red));
    drawOut();
    std::vector<std::chrono::steady_clock::time_point> draws;
    const SwapHook hook([&] { draws.push_back(std::chrono::steady_clock::now()); });
    const Frame frame(64, 64, blue);
    const auto countAfter = [&](auto set) {
        const int before = eglCalls(EglCall::swapBuffers);
        set();
        std::this_thread::sleep_for(std::chrono::milliseconds(60));  // more than are owed would come every 17 ms
        return eglCalls(EglCall::swapBuffers) - before;
    };
    EXPECT_EQ(countAfter([&] { drawOut(); }), 30);
    EXPECT_EQ(countAfter([&] { bus.setConfig(DCFG_YUV_FRAME, &frame.record); }), 1);
    const int two = countAfter([&] {
        bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        ASSERT_TRUE(waitForSwaps(10));
        drawOut();
    });
    EXPECT_GE(two, 40);
    EXPECT_LT(two, 60) << "requests don't add up";
    for (std::size_t i = 1; i < draws.size(); ++i) EXPECT_GE(draws[i] - draws[i - 1], std::chrono::milliseconds(17));
    stop();
}

TEST_F(DisplayGl, takesWindowsAsTheyCome) {
    start();
    const Frame frame(64, 64, red);
    bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    window.emplace(64, 64);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    expectShown(shown(frame), red, "first");

    CallLog log;
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    EXPECT_EQ(log.count("~Render _program"), 1) << "the same handle rebuilds the view";
    EXPECT_EQ(log.count("Texture::clear"), 2);
    EXPECT_EQ(log.count("eglDestroySurface 1"), 1);
    redraw();                                      // without a picture
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);  // undrawn, and gone with its window
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    expectShown(shown(frame), red, "again");

    Window other(96, 96, 200);
    bus.setConfig(DCFG_WINDOW_INSTANCE, other.handle());
    const Frame next(64, 64, blue);
    shown(next);
    expectShown(other.grab(), blue, "other");
    expectShown(window->grab(), red, "the old one keeps its picture");

    other.resize(200, 160);
    bus.setConfig(DCFG_CLEAR_COLOR, 0);
    shown(next);
    const Picture wide = other.grab();
    EXPECT_TRUE(near(wide.at(10, 80), {}, 0)) << "bars beside the picture after a new size";
    EXPECT_TRUE(near(wide.at(100, 5), toColor(blue), 1));

    bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    const int swaps = eglCalls(EglCall::swapBuffers);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    bus.setConfig(DCFG_SNAP, nullptr);
    EXPECT_EQ(eglCalls(EglCall::swapBuffers), swaps);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    expectShown(shown(next), blue, "back");
}

TEST_F(DisplayGl, outlivesItsWindow) {
    const Frame frame(64, 64, red);
    const struct {
        const char* name;
        void (*spoil)(Window&);
    } cases[] = {{"destroyed", [](Window& gone) { gone.destroy(); }},
                 {"resized to nothing", [](Window& gone) { gone.resize(1, 1); }},
                 {"unmapped", [](Window& gone) { gone.unmap(); }}};
    start();
    for (const auto& one : cases) {
        window.emplace(64, 64);
        bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
        expectShown(shown(frame), red, one.name);
        one.spoil(*window);
        for (int i = 0; i < 3; ++i) {
            bus.setConfig(DCFG_YUV_FRAME, &frame.record);
            bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
            std::this_thread::sleep_for(std::chrono::milliseconds(40));  // its draws may all fail before the swap
        }
    }
    window.emplace(64, 64);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    expectShown(shown(frame), red, "after all");
    window->destroy();
    display.reset();
}

TEST_F(DisplayGl, changesTheView) {
    std::atomic<int> draws = 0;
    std::atomic<std::thread::id> drawing;
    useProbes([&](const Texture& texture) {
        ++draws;
        drawing = std::this_thread::get_id();
        EXPECT_NE(texture.current[0], 0u);
    });
    const Frame frame(64, 64, red);
    bus.setConfig(DCFG_RENDER_MODE, 3);
    start(64, 64);
    shown(frame);
    EXPECT_GT(draws, 0) << "a mode that was set before the display, and before the window";
    EXPECT_NE(drawing.load(), std::this_thread::get_id());

    bus.setConfig(DCFG_RENDER_MODE, 0);
    expectShown(shown(), red, "the frame outlives the view");
    bus.setConfig(DCFG_PINCH, 2.0f);
    EXPECT_NEAR(scale(), 1.055, 1e-6);
    bus.setConfig(DCFG_RENDER_MODE, 0);
    EXPECT_EQ(scale(), 1.0f) << "the same mode is a new view all the same";

    for (const int unknown : {-1, 11}) {
        float none = 0;
        bus.setConfig(DCFG_RENDER_MODE, 0);
        useProbes(nullptr);
        bus.setConfig(DCFG_RENDER_MODE, unknown);
        shown(frame);  // swaps only
        EXPECT_EQ(bus.readConfig(DCFG_SCALE, none), -1) << "no view";
        bus.setConfig(DCFG_RENDER_MODE, 0);
        EXPECT_EQ(bus.readConfig(DCFG_SCALE, none), -1) << "a valid mode alone brings none back";
        bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
        expectShown(shown(Frame(64, 64, blue)), blue, "a window does");
    }
    stop();
}

TEST_F(DisplayGl, replacesTheViewFromInsideItsDraw) {
    // A draw's own request reaches an observer of the player, which changes the mode on the render thread.
    std::atomic<bool> replaced = false;
    useProbes([&](const Texture&) {
        if (!replaced.exchange(true)) bus.setConfig(DCFG_RENDER_MODE, 0);
    });
    bus.setConfig(DCFG_RENDER_MODE, 1);
    start(64, 64);
    shown(Frame(64, 64, red));
    EXPECT_TRUE(replaced);
    expectShown(shown(), red);
    stop();
}

TEST_F(DisplayGl, leavesTheOtherDisplaysOfTheProcessAlone) {
    DisplayConfig otherBus;
    Window otherWindow(64, 64, 200);
    start(64, 64);
    auto other = CreateZETDisplay(&otherBus, &global);
    otherBus.setConfig(DCFG_WINDOW_INSTANCE, otherWindow.handle());
    const Frame first(64, 64, red), second(64, 64, blue);
    shown(first);
    otherBus.setConfig(DCFG_YUV_FRAME, &second.record);
    expectShown(shown(), red);
    display.reset();
    EXPECT_EQ(eglCalls(EglCall::terminate), 0);
    otherBus.setConfig(DCFG_YUV_FRAME, &first.record);
    otherBus.setConfig(DCFG_RENDER_REQUEST, nullptr);
    ASSERT_TRUE(waitForSwaps(4));
    expectShown(otherWindow.grab(), red, "goes on");
    start();
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    other.reset();
    expectShown(shown(second), blue, "came later");
    display.reset();
    EXPECT_EQ(eglCalls(EglCall::terminate), 1) << "the last one out";
}

TEST_F(DisplayGl, saysHowItEnds) {
    CallLog log;
    const std::vector<std::string> expected = {
        "Display::~Display begin",
        "Display::unInit begin",
        "null context",
        "~Render",
        "~Render _program",
        "Display::unInit eglDestroySurface 1",
        "Display::unInit eglDestroyContext 1",
        "Display::unInit eglTerminate 1",
        "Display::unInit eglReleaseThread 1",
        "Display::unInit end",
        "Display::run end",
        "Display::~Display end",
    };
    std::vector<void*> contexts;
    bus.registObserver(
        DCFG_GL_CONTEXT,
        [&](DisplayConfig&, DisplayConfigUserData& delivery) {
            contexts.push_back(delivery.getData());
            if (!delivery.getData()) ZETLog::instance().error("null context");
            return 0;
        },
        nullptr, DCFG_FLAG_VALUE);
    for (const bool withWindow : {true, false}) {
        contexts.clear();
        withWindow ? start(64, 64) : start();
        bus.setConfig(DCFG_SNAP, nullptr);  // its thread has begun
        const std::size_t before = log.lines().size();
        display.reset();
        std::vector<std::string> lines = log.lines();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
        std::vector<std::string> without = expected;
        if (!withWindow) without.erase(without.begin() + 3, without.begin() + 6);
        EXPECT_EQ(lines, without);
        EXPECT_EQ(contexts.size(), 2u);
        EXPECT_NE(contexts[0], nullptr);
        bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
    }
}

}  // namespace
}  // namespace zet::test
