#include "record/reserve.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace zetplay {

Reserve::Reserve(const std::string& path) {
    struct stat kind {};
    if (::stat(path.c_str(), &kind) == 0 && S_ISREG(kind.st_mode)) _file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
}

Reserve::~Reserve() {
    if (_file >= 0) ::close(_file);
}

int Reserve::hold(std::int64_t bytes) {
    constexpr std::int64_t step = 1 << 14;  // most pictures need no call
    if (_file < 0 || bytes <= _held) return 0;
    const int error = ::posix_fallocate(_file, _held, bytes + step - _held);
    if (error == ENOSPC || error == EFBIG || error == EDQUOT) return error;
    // A file system that can't preallocate is no reason to stop.
    _held = bytes + step;
    return 0;
}

void Reserve::release(std::int64_t bytes) {
    // Bytes behind the end of an MP4 file do no harm.
    if (_file >= 0 && ::ftruncate(_file, bytes) != 0) return;
    _held = bytes;
}

}  // namespace zetplay
