// Many threads on one bus while displays come and go, and what that leaves behind.

#include <GLES2/gl2.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

#include "support/displaytest.h"

namespace zet::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto stressTime = 2s;
constexpr unsigned unknownMode = renderModes.size();

/// Entries of /proc/self/task or /proc/self/fd.
std::ptrdiff_t entries(const char* directory) {
    return std::distance(std::filesystem::directory_iterator(directory), {});
}

/// GL objects of the current context.
int glNames() {
    int count = 0;
    for (GLuint name = 1; name < 5000; ++name) {
        count += glIsTexture(name) + glIsFramebuffer(name) + glIsProgram(name) + glIsShader(name);
    }
    return count;
}

class Stress : public DisplayTest {
protected:
    Stress() { frames[1].record.lensRegion = region; }

    /// Everything that a player may set, each kind on a thread of its own, until the threads go.
    std::vector<std::jthread> setEverything() {
        std::vector<std::jthread> threads;
        const auto add = [&threads](std::chrono::milliseconds pause, const auto& act) {
            threads.emplace_back([pause, act, seed = threads.size() + 1](const std::stop_token& stop) {
                std::minstd_rand random(static_cast<unsigned>(seed));
                const auto below = [&random](unsigned end) { return static_cast<int>(random() % end); };
                for (; !stop.stop_requested(); std::this_thread::sleep_for(pause)) act(below);
            });
        };
        add(0ms, [this](auto below) { bus.setConfig(DCFG_YUV_FRAME, &frames[below(3)].record); });
        add(0ms, [this](auto below) {
            const LensParam lens{below(2) * 0.1};
            bus.setConfig(DCFG_LENS_PARAM, &lens);
            bus.setConfig(DCFG_CLEAR_COLOR, static_cast<std::uint32_t>(below(1 << 30)));
            bus.setConfig(DCFG_FACE_OPTION, below(16));
        });
        add(1ms, [this](auto below) {
            DragPoints drag{10, 10, static_cast<float>(below(300)), static_cast<float>(below(200))};
            TouchPoint point{drag.x2, drag.y2};
            bus.setConfig(DCFG_DRAG, &drag);
            bus.setConfig(below(2) ? DCFG_TOUCH_DOWN : DCFG_TOUCH_UP, &point);
            bus.setConfig(DCFG_DOUBLE_TAP, &point);
            bus.setConfig(DCFG_PINCH, below(2) ? 1.1f : 0.9f);
        });
        add(1ms, [this](auto below) {
            const AutoRotate rotate{below(2), 1};
            const Fling fling{static_cast<float>(below(900)), 50};
            const SceneBackdrop scene{below(2), below(2)};
            float value = 0;
            bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
            bus.setConfig(DCFG_FLING, &fling);
            bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
            bus.setConfig(DCFG_SCALE, static_cast<float>(1 + below(4)));
            bus.readConfig(DCFG_SCALE, value);
            bus.setConfig(DCFG_ROTATION, below(4) * 90);
            bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
        });
        add(5ms, [this](auto below) { bus.setConfig(DCFG_RENDER_MODE, below(unknownMode + 1)); });
        add(20ms, [this](auto below) {
            const std::uintptr_t handles[] = {first.handle(), second.handle(), 0};
            bus.setConfig(DCFG_WINDOW_INSTANCE, handles[below(3)]);
        });
        add(3ms, [this](auto below) {
            std::vector<std::uint8_t> pixels(320 * 240 * 4);
            SnapData snap;
            snap.sourceFrame = below(2);
            snap.buffer = pixels.data();
            snap.bufferSize = static_cast<int>(pixels.size());
            bus.setConfig(DCFG_SNAP, &snap);
        });
        return threads;
    }

    const int region[4] = {4800, 5000, 4500, 4500};
    Frame frames[3] = {smoothFrame(64, 64), smoothFrame(160, 96), smoothFrame(96, 160, 128)};
    Window first{160, 120};
    Window second{120, 160, 200, 0};
};

TEST_F(Stress, everybodySetsEverythingAtOnce) {
    start();
    int names = 0;
    const auto showFlat = [&] {
        bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_FLAT);
        bus.setConfig(DCFG_WINDOW_INSTANCE, first.handle());
        bus.setConfig(DCFG_YUV_FRAME, &frames[0].record);
        const SwapHook hook([&] { names = glNames(); });
        redraw();
    };
    showFlat();
    const int before = names;
    EXPECT_GT(before, 0);
    auto players = setEverything();
    std::this_thread::sleep_for(stressTime);
    players.clear();
    showFlat();
    EXPECT_EQ(names, before) << "it still does what it is told, and views and windows have left nothing";
}

TEST_F(Stress, displaysComeAndGoUnderTheirSetters) {
    const auto players = setEverything();
    int lives = 0;
    for (const auto end = Clock::now() + stressTime; lives < 5 || Clock::now() < end; ++lives) {
        start();
        std::this_thread::sleep_for(std::chrono::milliseconds(lives % 30));
        display.reset();  // setters are on their way in, inside, and waiting for the render thread
    }
}

TEST_F(Stress, livesLeaveNothing) {
    const auto live = [this](int i) {
        bus.setConfig(DCFG_WINDOW_INSTANCE, i % 3 ? first.handle() : std::uintptr_t{0});
        start();
        bus.setConfig(DCFG_YUV_FRAME, &frames[0].record);
        display.reset();
    };
    for (int i = 0; i < 20; ++i) live(i);
    const auto threads = entries("/proc/self/task"), descriptors = entries("/proc/self/fd");
    for (int i = 0; i < 100; ++i) live(i);
    EXPECT_EQ(entries("/proc/self/fd"), descriptors);
    // A thread that has been joined may still be listed for a moment.
    const auto end = Clock::now() + 10s;
    while (entries("/proc/self/task") > threads && Clock::now() < end) std::this_thread::yield();
    EXPECT_LE(entries("/proc/self/task"), threads);
}

}  // namespace
}  // namespace zet::test
