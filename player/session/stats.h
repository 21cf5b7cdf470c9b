#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zetplay {

/// What a run has cost since this object was made.
class Stats {
public:
    /// One line of JSON.
    std::string line(std::int64_t framesRead, std::int64_t framesSet, std::int64_t framesDrawn) const;

private:
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};

}  // namespace zetplay
