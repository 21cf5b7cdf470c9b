// Many threads on one bus, displays that come and go under them, and what they leave behind.

#include <dirent.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include "support/displaytest.h"
#include "support/glnames.h"

namespace zet::test {

namespace {

using namespace std::chrono_literals;

/// 2 seconds, or what ZET_STRESS_SECONDS says.
std::chrono::seconds stressTime() {
    const char* const seconds = std::getenv("ZET_STRESS_SECONDS");
    return std::chrono::seconds(seconds ? std::atoi(seconds) : 2);
}

/// Entries of /proc/self/task or /proc/self/fd.
int entries(const char* directory) {
    int count = 0;
    DIR* const open = opendir(directory);
    while (open && readdir(open)) ++count;
    if (open) closedir(open);
    return count;
}

/// Threads that each do one thing over and over until this goes.
class Crowd {
public:
    using Random = std::minstd_rand;

    ~Crowd() { disperse(); }
    void add(const std::function<void(Random&)>& act) {
        _threads.emplace_back([this, act, seed = _threads.size() + 1] {
            Random random(static_cast<unsigned>(seed));
            while (!_enough) act(random), ++_acts;
        });
    }
    void disperse() {
        _enough = true;
        for (std::thread& thread : _threads) thread.join();
        _threads.clear();
    }
    int acts() const { return _acts; }

private:
    std::atomic<bool> _enough = false;
    std::atomic<int> _acts = 0;
    std::vector<std::thread> _threads;
};

class Stress : public DisplayTest {
protected:
    /// Everything that a player may set, each kind on a thread of its own.
    void setEverything(Crowd& crowd) {
        crowd.add([this](auto& random) { bus.setConfig(DCFG_YUV_FRAME, &frames[random() % 3].record); });
        crowd.add([this](auto& random) {
            DragPoints drag{10, 10, static_cast<float>(random() % 300), static_cast<float>(random() % 200)};
            bus.setConfig(DCFG_DRAG, &drag);
            TouchPoint point{drag.x2, drag.y2};
            bus.setConfig(random() % 2 ? DCFG_TOUCH_DOWN : DCFG_TOUCH_UP, &point);
            bus.setConfig(DCFG_DOUBLE_TAP, &point);
            bus.setConfig(DCFG_PINCH, random() % 2 ? 1.1f : 0.9f);
            std::this_thread::sleep_for(1ms);
        });
        crowd.add([this](auto& random) {
            const LensParam lens{random() % 2 ? 0.1 : 0.0};
            bus.setConfig(DCFG_LENS_PARAM, &lens);
            bus.setConfig(DCFG_CLEAR_COLOR, static_cast<std::uint32_t>(random()));
            bus.setConfig(DCFG_FACE_OPTION, static_cast<int>(random() % 16));
        });
        crowd.add([this](auto& random) {
            const AutoRotate rotate{static_cast<int>(random() % 2), 1.0f};
            const Fling fling{static_cast<float>(random() % 900), 50.0f};
            const SceneBackdrop scene{static_cast<int>(random() % 2), static_cast<int>(random() % 2)};
            bus.setConfig(DCFG_AUTO_ROTATE, &rotate);
            bus.setConfig(DCFG_FLING, &fling);
            bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
            bus.setConfig(DCFG_SCALE, 1.0f + static_cast<float>(random() % 4));
            float value = 0;
            bus.readConfig(DCFG_SCALE, value);
            bus.setConfig(DCFG_ROTATION, static_cast<std::uint32_t>(random() % 4 * 90));
            bus.setConfig(DCFG_RENDER_REQUEST, nullptr);
            std::this_thread::sleep_for(1ms);
        });
        crowd.add([this](auto& random) {
            bus.setConfig(DCFG_RENDER_MODE, static_cast<int>(random() % 12));  // 11 is no view
            std::this_thread::sleep_for(5ms);
        });
        crowd.add([this](auto& random) {
            const std::uintptr_t handles[] = {first.handle(), second.handle(), 0};
            bus.setConfig(DCFG_WINDOW_INSTANCE, handles[random() % 3]);
            std::this_thread::sleep_for(20ms);
        });
        crowd.add([this](auto& random) {
            std::vector<std::uint8_t> pixels(320 * 240 * 4);
            SnapData snap;
            snap.sourceFrame = static_cast<int>(random() % 2);
            snap.buffer = pixels.data();
            snap.bufferSize = static_cast<int>(pixels.size());
            bus.setConfig(DCFG_SNAP, &snap);
            std::this_thread::sleep_for(3ms);
        });
    }

    const int region[4] = {4800, 5000, 4500, 4500};
    Frame frames[3] = {smoothFrame(64, 64), smoothFrame(160, 96), smoothFrame(96, 160, 128)};
    Window first{160, 120};
    Window second{120, 160, 200, 0};
};

TEST_F(Stress, EverybodySetsEverythingAtOnce) {
    frames[1].record.lensRegion = region;
    start();
    Crowd crowd;
    setEverything(crowd);
    std::this_thread::sleep_for(stressTime());
    crowd.disperse();
    EXPECT_GT(crowd.acts(), 100);
    // It still does what it is told.
    bus.setConfig(DCFG_RENDER_MODE, 0);
    bus.setConfig(DCFG_WINDOW_INSTANCE, first.handle());
    bus.setConfig(DCFG_YUV_FRAME, &frames[0].record);
    redraw();
    stop();
    EXPECT_EQ(liveGlNames(), 0);
}

TEST_F(Stress, DisplaysComeAndGoUnderTheirSetters) {
    Crowd crowd;
    setEverything(crowd);
    int lives = 0;
    for (const auto end = std::chrono::steady_clock::now() + stressTime(); std::chrono::steady_clock::now() < end;) {
        start();
        std::this_thread::sleep_for(std::chrono::milliseconds(lives % 30));
        display.reset();  // setters are on their way in, inside, and waiting for the render thread
        ++lives;
    }
    crowd.disperse();
    EXPECT_GT(lives, 5);
    EXPECT_EQ(liveGlNames(), 0);
}

TEST_F(Stress, LivesLeaveNothing) {
    const auto live = [this](int i) {
        bus.setConfig(DCFG_WINDOW_INSTANCE, i % 3 ? first.handle() : std::uintptr_t{0});
        start();
        bus.setConfig(DCFG_YUV_FRAME, &frames[0].record);
        display.reset();
    };
    bus.setConfig(DCFG_RENDER_MODE, 0);
    for (int i = 0; i < 20; ++i) live(i);
    const int threads = entries("/proc/self/task");
    const int descriptors = entries("/proc/self/fd");
    for (int i = 0; i < 50 * stressTime().count(); ++i) live(i);
    EXPECT_EQ(entries("/proc/self/task"), threads);
    EXPECT_EQ(entries("/proc/self/fd"), descriptors);
    EXPECT_EQ(liveGlNames(), 0);
}

}  // namespace

}  // namespace zet::test
