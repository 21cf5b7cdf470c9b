#include "session/stats.h"

#include <sys/resource.h>

#include <cstdio>

namespace zetplay {

std::string Stats::line(std::int64_t framesRead, std::int64_t framesSet, std::int64_t framesDrawn) const {
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - _start;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    char text[256];
    std::snprintf(text, sizeof text,
                  "{\"frames_read\": %lld, \"frames_set\": %lld, \"frames_drawn\": %lld, \"wall_seconds\": %.3f, "
                  "\"cpu_seconds\": %.3f, \"peak_resident_bytes\": %lld}",
                  static_cast<long long>(framesRead), static_cast<long long>(framesSet),
                  static_cast<long long>(framesDrawn), wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
                  static_cast<long long>(usage.ru_maxrss) * 1024);
    return text;
}

}  // namespace zetplay
