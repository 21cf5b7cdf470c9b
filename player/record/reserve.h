#pragma once

#include <cstdint>
#include <string>

namespace zetplay {

/// Room on the disk behind what a growing file holds, kept free for its clean end.
class Reserve {
public:
    /// `path` exists. A device has no room to hold: the rest then does nothing.
    explicit Reserve(const std::string& path);
    ~Reserve();
    Reserve(const Reserve&) = delete;
    Reserve& operator=(const Reserve&) = delete;

    /// Makes sure of the first `bytes` of the file. 0, or an error number if the place is full.
    int hold(std::int64_t bytes);
    /// Gives back all behind the first `bytes`.
    void release(std::int64_t bytes);

private:
    int _file = -1;
    std::int64_t _held = 0;  // bytes
};

}  // namespace zetplay
