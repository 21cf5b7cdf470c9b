// Resident memory along 4,000 window changes and 4,000 mode changes. The heap settles within the first 500.

#include <unistd.h>

#include <cstdio>
#include <vector>

#include "worker/xwindow.h"
#include "zet/zet.h"

namespace {

long residentKilobytes() {
    long pages = 0;
    long resident = 0;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (!file || std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    if (file) std::fclose(file);
    return resident * sysconf(_SC_PAGESIZE) / 1024;
}

template <typename Change>
void count(const char* what, const Change& change) {
    std::printf("%s, KiB after", what);
    for (int i = 1; i <= 4000; ++i) {
        change(i);
        if (i == 50 || i == 500 || i % 1000 == 0) std::printf(" %d: %ld", i, residentKilobytes());
        std::fflush(stdout);
    }
    std::printf("\n");
}

}  // namespace

int main() {
    const bench::XWindow first({640, 480});
    const bench::XWindow second({320, 240});
    const std::vector<std::uint8_t> luma(640 * 480, 90);
    const std::vector<std::uint8_t> chroma(320 * 240, 128);
    zet::YUV420PData frame;
    frame.y = luma.data();
    frame.u = frame.v = chroma.data();
    frame.yLineSize = frame.width = 640;
    frame.uvLineSize = 320;
    frame.height = 480;

    zet::DisplayConfig config;
    zet::GlobalConfiger global;
    auto display = zet::CreateZETDisplay(&config, &global);
    config.setConfig(zet::DCFG_WINDOW_INSTANCE, first.handle());
    count("window changes", [&](int i) {
        config.setConfig(zet::DCFG_WINDOW_INSTANCE, i % 2 ? second.handle() : first.handle());
        config.setConfig(zet::DCFG_YUV_FRAME, &frame);
    });
    count("mode changes", [&](int i) {
        config.setConfig(zet::DCFG_RENDER_MODE,
                         zet::renderModes[static_cast<std::size_t>(i) % zet::renderModes.size()].mode);
        config.setConfig(zet::DCFG_YUV_FRAME, &frame);
    });
}
