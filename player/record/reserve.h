#pragma once

#include <cstdint>
#include <string>

namespace zetplay {

/// Preallocates disk space behind the end of a growing file, so that its trailer fits on a disk that fills up.
class Reserve {
public:
    /// `path` exists. For a device, all operations do nothing.
    explicit Reserve(const std::string& path);
    ~Reserve();
    Reserve(const Reserve&) = delete;
    Reserve& operator=(const Reserve&) = delete;

    /// Allocates the first `bytes` of the file. 0, or an error number if the disk or a limit leaves no room.
    int hold(std::int64_t bytes);
    /// Frees all behind the first `bytes`.
    void release(std::int64_t bytes);

private:
    int _file = -1;
    std::int64_t _held = 0;  // bytes
};

}  // namespace zetplay
