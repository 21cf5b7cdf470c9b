// What the module costs when nothing changes: no allocation a frame, no wake-up without a reason.

#include <dirent.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "support/allocations.h"
#include "support/displaytest.h"

namespace zet::test {

namespace {

using SteadyState = DisplayTest;

TEST_F(SteadyState, FramesByPointerAllocateNothing) {
    const int region[4] = {5000, 5000, 4500, 4500};
    Frame frame = smoothFrame(128, 128);
    frame.record.lensRegion = region;
    start(160, 120);
    countAllocations();
    const SwapHook hook(countAllocations);
    for (int mode = 0; mode <= 10; ++mode) {
        bus.setConfig(DCFG_RENDER_MODE, mode);
        const auto showFrames = [&](int count) {
            for (int i = 0; i < count; ++i) {
                bus.setConfig(DCFG_YUV_FRAME, &frame.record);
                redraw();
            }
        };
        showFrames(3);
        const int before = allocations();
        showFrames(10);
        EXPECT_EQ(allocations(), before) << "mode " << mode;
    }
}

/// Voluntary context switches of all threads but the one that asks.
long switchesOfOthers() {
    long sum = 0;
    DIR* const tasks = opendir("/proc/self/task");
    const std::string self = std::to_string(gettid());
    for (const dirent* entry = readdir(tasks); entry; entry = readdir(tasks)) {
        if (entry->d_name[0] == '.' || entry->d_name == self) continue;
        std::ifstream status("/proc/self/task/" + std::string(entry->d_name) + "/status");
        for (std::string word; status >> word;) {
            long count = 0;
            if (word == "voluntary_ctxt_switches:" && status >> count) sum += count;
        }
    }
    closedir(tasks);
    return sum;
}

TEST_F(SteadyState, SleepsWithNoTimer) {
    const Frame frame = smoothFrame(64, 64);
    start(160, 120);
    shown(frame);
    drawOut();
    const long before = switchesOfOthers();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_EQ(switchesOfOthers(), before);
}

}  // namespace

}  // namespace zet::test
