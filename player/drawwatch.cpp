#include "drawwatch.h"

#include <algorithm>

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// What a request is worth, and the draw in which it may have come.
constexpr int drawsOfRequest = 31;
// The module draws at most once in 17 ms.
constexpr auto paceAndABit = 18ms;

}  // namespace

void DrawWatch::requested() {
    const std::lock_guard lock(_mutex);
    _owed = drawsOfRequest;
    _alone = false;
}

void DrawWatch::drawn() {
    {
        const std::lock_guard lock(_mutex);
        ++_draws;
        _lastDraw = Clock::now();
        _owed = std::max(_owed - 1, 0);
        if (_pending && !_setting) frameDrawn();
    }
    _changed.notify_all();
}

void DrawWatch::frameBegins() {
    const std::lock_guard lock(_mutex);
    _pending = _setting = true;
    _alone = _owed == 0;
    _drawsBefore = _draws;
}

void DrawWatch::frameEnds() {
    const std::lock_guard lock(_mutex);
    _setting = false;
    if (_alone && _draws != _drawsBefore) frameDrawn();
}

bool DrawWatch::waitFrame(Duration most) {
    std::unique_lock lock(_mutex);
    const bool certain = _draws == _drawsBefore;
    const auto end = certain ? Clock::now() + most : _lastDraw + paceAndABit;
    const bool known = _changed.wait_until(lock, end, [this] { return !_pending; });
    _drawsUntilDue = _draws;
    return known;
}

void DrawWatch::dueDrawn() {
    const std::lock_guard lock(_mutex);
    if (_draws == _drawsUntilDue) _owed = 0;
    if (_pending && _draws != _drawsBefore) frameDrawn();
    _pending = false;
}

void DrawWatch::waitDraws(std::uint32_t draws, Duration quiet) {
    std::unique_lock lock(_mutex);
    const std::uint32_t start = _draws;
    for (std::uint32_t seen = start; seen - start < draws; seen = _draws)
        if (!_changed.wait_for(lock, quiet, [&] { return _draws != seen; })) return;
}

std::int64_t DrawWatch::framesDrawn() const {
    const std::lock_guard lock(_mutex);
    return _framesDrawn;
}

void DrawWatch::frameDrawn() {
    _pending = false;
    ++_framesDrawn;
}

}  // namespace zetplay
