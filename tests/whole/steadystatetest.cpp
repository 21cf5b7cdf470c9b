// What the module costs when nothing changes: no allocation a frame, no wake-up without a reason.

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "support/allocations.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

using SteadyState = DisplayTest;

TEST_F(SteadyState, framesByPointerAllocateNothing) {
    const int region[4] = {5000, 5000, 4500, 4500};
    Frame frame = smoothFrame(128, 128);
    frame.record.lensRegion = region;
    start(160, 120);
    countAllocations();
    const SwapHook hook(countAllocations);
    for (const RenderModeInfo& view : renderModes) {
        bus.setConfig(DCFG_RENDER_MODE, view.mode);
        const auto showFrames = [&](int count) {
            for (int i = 0; i < count; ++i) {
                bus.setConfig(DCFG_YUV_FRAME, &frame.record);
                redraw();
            }
        };
        showFrames(3);
        const int before = allocations();
        showFrames(10);
        EXPECT_EQ(allocations(), before) << view.name;
    }
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
