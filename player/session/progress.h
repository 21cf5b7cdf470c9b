#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace zetplay {

/// A progress bar on standard error; silent where that is no terminal.
class Progress {
public:
    /// `total` of 0 if nobody knows it: then the steps are counted.
    Progress(std::string what, std::int64_t total);
    /// Ends the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void step();

private:
    void draw() const;

    std::string _what;
    std::int64_t _total;
    std::int64_t _done = 0;
    bool _terminal;
    std::chrono::steady_clock::time_point _drawn;
};

/// "recording [######              ]  30%  3/10", or "recording 3".
std::string progressLine(const std::string& what, std::int64_t done, std::int64_t total);

}  // namespace zetplay
