// What the module costs when nothing changes: no allocation a frame, no wake-up without a reason.

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <new>
#include <string>
#include <thread>

#include "support/displaytest.h"

static thread_local bool isCounted = false;
static std::atomic<int> allocations = 0;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (isCounted) ++allocations;
    return std::malloc(size);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace zet::test {
namespace {

using SteadyState = DisplayTest;

TEST_F(SteadyState, framesByPointerAllocateNothing) {
    const int region[4] = {5000, 5000, 4500, 4500};
    Frame frame = smoothFrame(128, 128);
    frame.record.lensRegion = region;
    const int kind = AI_KIND_FACES;
    const std::vector<FaceItem> faces(10, {0, 1, 30, 20, 20, 40, 40, "longer than 15 letters"});
    frame.record.aiCount = 10;
    frame.record.aiKind = &kind;
    frame.record.aiItems = faces.data();
    bus.setConfig(DCFG_FACE_OPTION, 15);
    global.setFontPath("/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf");
    start(160, 120);
    isCounted = true;
    const SwapHook hook([] { isCounted = true; });
    for (int mode = 0; mode <= 10; ++mode) {
        bus.setConfig(DCFG_RENDER_MODE, mode);
        const auto showFrames = [&](int count) {
            for (int i = 0; i < count; ++i) {
                bus.setConfig(DCFG_YUV_FRAME, &frame.record);
                redraw();
            }
        };
        showFrames(3);
        const int before = allocations;
        EXPECT_GT(before, 0) << "the count counts";
        showFrames(10);
        EXPECT_EQ(allocations, before) << "mode " << mode;
    }
    isCounted = false;
}

std::atomic<pid_t> renderThread = 0;

/// Voluntary context switches of the render thread.
long switches() {
    std::ifstream status("/proc/self/task/" + std::to_string(renderThread) + "/status");
    long count = -1;
    for (std::string word; count < 0 && status >> word;) {
        if (word == "voluntary_ctxt_switches:") status >> count;
    }
    return count;
}

TEST_F(SteadyState, sleepsWithNoTimer) {
    const Frame frame = smoothFrame(64, 64);
    const SwapHook hook([] { renderThread = gettid(); });
    start(160, 120);
    shown(frame);
    drawOut();
    const long before = switches();
    EXPECT_GT(before, 0);
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_LE(switches() - before, 1) << "it may have been falling asleep";
}

}  // namespace

}  // namespace zet::test
