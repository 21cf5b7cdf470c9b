#include "bus/drawwatch.h"

#include <algorithm>

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// 30, and one that may have begun before the request.
constexpr int drawsOfRequest = 31;
// A millisecond more, since the module counts whole ones.
constexpr auto paceAndABit = DrawWatch::pace + 1ms;

}  // namespace

void DrawWatch::requestBegins() {
    const std::lock_guard lock(_mutex);
    ++_requesting;
    _alone = false;
}

void DrawWatch::requestEnds() {
    const std::lock_guard lock(_mutex);
    --_requesting;
    ++_requests;
    _owed = drawsOfRequest;
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
    _alone = _owed == 0 && _requesting == 0;
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
    _requestsUntilDue = _requests;
    return known;
}

void DrawWatch::dueDrawn() {
    const std::lock_guard lock(_mutex);
    if (_draws == _drawsUntilDue && _requests == _requestsUntilDue) _owed = 0;
    if (_pending && _draws != _drawsBefore) frameDrawn();
    _pending = false;
}

void DrawWatch::waitOwed() {
    // Draws without a picture give no notice: wait only as long as they take.
    std::unique_lock lock(_mutex);
    const std::uint32_t start = _draws;
    for (std::uint32_t seen = start; seen - start < drawsOfRequest; seen = _draws)
        if (!_changed.wait_for(lock, drawsOfRequest * pace, [&] { return _draws != seen; })) return;
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
