#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zetplay {

/// Lines of standard input, as they come in.
class LineReader {
public:
    /// The next line; nothing at the end. While it waits it asks `goOn` now and then; false ends the wait.
    std::optional<std::string> next(const std::function<bool()>& goOn);

private:
    bool fill(const std::function<bool()>& goOn);

    std::string _buffer;
    bool _end = false;
};

}  // namespace zetplay
