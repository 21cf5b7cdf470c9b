#include "session/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace zetplay {

namespace {

constexpr int barWidth = 40;

}  // namespace

std::string progressLine(const std::string& what, std::int64_t done, std::int64_t total) {
    if (total <= 0) return what + " " + std::to_string(done);
    const double share = std::clamp(static_cast<double>(done) / static_cast<double>(total), 0.0, 1.0);
    std::string bar(barWidth, ' ');
    std::fill_n(bar.begin(), static_cast<int>(share * barWidth), '#');
    std::string percent = std::to_string(static_cast<int>(share * 100));
    percent.insert(0, 3 - percent.size(), ' ');
    return what + " [" + bar + "] " + percent + "%  " + std::to_string(done) + "/" + std::to_string(total);
}

Progress::Progress(std::string what, std::int64_t total)
    : _what(std::move(what)), _total(total), _terminal(::isatty(STDERR_FILENO) == 1) {
    draw();
}

Progress::~Progress() {
    draw();
    if (_terminal) std::fputc('\n', stderr);
}

void Progress::step() {
    ++_done;
    // Not for each step: a terminal may be slower than the work.
    const auto now = std::chrono::steady_clock::now();
    if (now - _drawn < std::chrono::milliseconds(100)) return;
    _drawn = now;
    draw();
}

void Progress::draw() const {
    if (_terminal) std::fprintf(stderr, "\r%s", progressLine(_what, _done, _total).c_str());
}

}  // namespace zetplay
