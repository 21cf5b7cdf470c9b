// The way to an idle render thread and back, beside two bare threads that wake each other; and what needs a display.

#include <benchmark/benchmark.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "worker/record.h"

namespace {

constexpr bench::Size windowSize{1280, 720};
const char* const font = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// A display with a window, and a way to wait for its draws.
class Display {
public:
    explicit Display(const bench::XWindow& window) : _observer(&_config) {
        _global.setFontPath(font);
        _observer.regist(
            zet::DCFG_DRAWN,
            [this](zet::DisplayConfig&, zet::DisplayConfigUserData&) {
                const std::lock_guard lock(_mutex);
                ++_drawn;
                _changed.notify_one();
                return 0;
            },
            zet::DCFG_FLAG_EVENT);
        _display = zet::CreateZETDisplay(&_config, &_global);
        _config.setConfig(zet::DCFG_WINDOW_INSTANCE, window.handle());
    }

    void show(const bench::Picture& picture) {
        zet::YUV420PData frame = bench::recordOf(picture);
        std::unique_lock lock(_mutex);
        const long before = _drawn;
        lock.unlock();
        _config.setConfig(zet::DCFG_YUV_FRAME, &frame);
        lock.lock();
        _changed.wait(lock, [&] { return _drawn > before; });
    }

    zet::DisplayConfig& config() { return _config; }
    zet::GlobalConfiger& global() { return _global; }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    long _drawn = 0;
    zet::DisplayConfig _config;
    zet::GlobalConfiger _global;
    zet::DisplayConfigKit _observer;
    std::shared_ptr<zet::DisplayConfigKit> _display;
};

// A setting whose setter waits for the render thread, and that changes nothing there.
void setOnRenderThread(benchmark::State& state) {
    const bench::XWindow window(windowSize);
    Display display(window);
    for (auto _ : state) display.config().setConfig(zet::DCFG_FACE_OPTION, 0);
}

void pingPong(benchmark::State& state) {
    std::mutex mutex;
    std::condition_variable ping;
    std::condition_variable pong;
    bool asked = false;
    bool ends = false;
    std::thread other([&] {
        std::unique_lock lock(mutex);
        while (!ends) {
            ping.wait(lock, [&] { return asked || ends; });
            asked = false;
            pong.notify_one();
        }
    });
    for (auto _ : state) {
        std::unique_lock lock(mutex);
        asked = true;
        ping.notify_one();
        pong.wait(lock, [&] { return !asked; });
    }
    {
        const std::lock_guard lock(mutex);
        ends = true;
    }
    ping.notify_one();
    other.join();
}

void takeSnapshots(benchmark::State& state, std::int64_t startTime) {
    const bench::XWindow window(windowSize);
    Display display(window);
    display.show(bench::Picture({1280, 720}, 0));
    display.global().setStartTime4WaterMarker(startTime);
    std::vector<std::uint8_t> buffer(static_cast<std::size_t>(windowSize.width * windowSize.height * 4));
    for (auto _ : state) {
        zet::SnapData snap;
        snap.buffer = buffer.data();
        snap.bufferSize = static_cast<int>(buffer.size());
        snap.postProcess = 1;
        display.config().setConfig(zet::DCFG_SNAP, &snap);
        if (snap.width == 0) state.SkipWithError("no snapshot");
    }
}

void snap(benchmark::State& state) {
    takeSnapshots(state, 0);
}

void snapWithTimestamp(benchmark::State& state) {
    takeSnapshots(state, 1700000000000);
}

void startDisplay(benchmark::State& state) {
    const bench::XWindow window(windowSize);
    const bench::Picture picture({1920, 1080}, 0);
    for (auto _ : state) {
        auto display = std::make_unique<Display>(window);
        display->show(picture);
        state.PauseTiming();
        display.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(setOnRenderThread)->UseRealTime();
BENCHMARK(pingPong)->UseRealTime();
BENCHMARK(snap)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(snapWithTimestamp)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(startDisplay)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
