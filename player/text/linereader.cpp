#include "text/linereader.h"

#include <poll.h>
#include <unistd.h>

namespace zetplay {

std::optional<std::string> LineReader::next(const std::function<bool()>& goOn) {
    if (!goOn()) return std::nullopt;
    std::size_t newline;
    while ((newline = _buffer.find('\n')) == _buffer.npos)
        if (!fill(goOn)) break;
    if (newline == _buffer.npos && (_buffer.empty() || !_end)) return std::nullopt;
    std::string line = _buffer.substr(0, newline);
    _buffer.erase(0, newline == _buffer.npos ? newline : newline + 1);
    return line;
}

bool LineReader::fill(const std::function<bool()>& goOn) {
    constexpr int patienceMs = 20;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (!_end && poll(&input, 1, patienceMs) <= 0)
        if (!goOn()) return false;
    char bytes[4096];
    const ssize_t count = _end ? 0 : read(STDIN_FILENO, bytes, sizeof bytes);
    _end = count <= 0;
    if (!_end) _buffer.append(bytes, static_cast<std::size_t>(count));
    return !_end;
}

}  // namespace zetplay
