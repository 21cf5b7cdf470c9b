#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zetplay {

/// Lines of standard input, as they come in.
class LineReader {
public:
    /// The next line; nothing at the end. While none is there `goOn` is asked now and then, and its false ends the
    /// wait.
    std::optional<std::string> next(const std::function<bool()>& goOn);

private:
    bool fill(const std::function<bool()>& goOn);

    std::string _buffer;
    bool _end = false;
};

}  // namespace zetplay
