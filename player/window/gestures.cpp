#include "window/gestures.h"

#include <algorithm>
#include <cmath>

#include "zet/rendermode.h"

namespace zetplay {

namespace {

constexpr float tapRadius = 10;        // pixels that a tap may wander
constexpr double tapTime = 0.3;        // seconds that a tap may last
constexpr double doubleTapTime = 0.4;  // seconds between the ends of two taps
constexpr float doubleTapRadius = 30;  // pixels between them
constexpr double trailTime = 0.1;      // seconds before the release, over which its speed is measured
constexpr float leastFling = 200;      // pixels per second
constexpr float pinchStep = 1.05f;     // ratio of finger distances that makes one pinch
constexpr float wheelStep = 1.1f;      // pinch factor of a notch

float distance(zet::TouchPoint a, zet::TouchPoint b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

}  // namespace

std::optional<Gesture> gestureForView(const Gesture& gesture, int view) {
    if (const auto* drag = std::get_if<zet::DragPoints>(&gesture); drag && view == zet::RENDER_MODE_FLAT)
        return zet::DragPoints{drag->x2, drag->y2, drag->x1, drag->y1};
    if (const auto* fling = std::get_if<zet::Fling>(&gesture)) {
        if (view == zet::RENDER_MODE_FLAT) return std::nullopt;
        if (view == zet::RENDER_MODE_WALL_TWO) return zet::Fling{-fling->vx, -fling->vy};
    }
    return gesture;
}

void Gestures::down(std::int64_t finger, zet::TouchPoint at, double time) {
    if (find(finger)) return;
    _fingers.push_back({finger, at});
    if (_fingers.size() == 1) {
        _dragging = true;
        _moved = false;
        _start = {at, time};
        _trail.assign(1, _start);
        _sink(TouchDown{at});
    } else if (_fingers.size() == 2) {
        if (_dragging) _sink(TouchUp{_fingers.front().at});
        _dragging = false;
        _span = distance(_fingers[0].at, _fingers[1].at);
    }
}

void Gestures::move(std::int64_t finger, zet::TouchPoint at, double time) {
    Finger* moved = find(finger);
    if (!moved) return;
    const zet::TouchPoint from = std::exchange(moved->at, at);
    if (_dragging) {
        _moved = _moved || distance(_start.at, at) > tapRadius;
        _trail.push_back({at, time});
        std::erase_if(_trail, [&](const Sample& sample) { return time - sample.time > trailTime; });
        _sink(zet::DragPoints{from.x, from.y, at.x, at.y});
    } else if (_fingers.size() == 2) {
        pinch();
    }
}

void Gestures::up(std::int64_t finger, zet::TouchPoint at, double time) {
    Finger* lifted = find(finger);
    if (!lifted) return;
    _fingers.erase(_fingers.begin() + (lifted - _fingers.data()));
    if (_dragging) release(at, time);
    _dragging = false;
}

void Gestures::release(zet::TouchPoint at, double time) {
    _sink(TouchUp{at});
    const bool tap = !_moved && time - _start.time <= tapTime;
    if (!tap) {
        _lastTap.reset();
        const zet::Fling velocity = speed(time);
        if (_moved && std::hypot(velocity.vx, velocity.vy) >= leastFling) _sink(velocity);
    } else if (_lastTap && time - _lastTap->time <= doubleTapTime && distance(at, _lastTap->at) <= doubleTapRadius) {
        _lastTap.reset();
        _sink(DoubleTap{at});
    } else {
        _lastTap = Sample{at, time};
    }
}

zet::Fling Gestures::speed(double time) const {
    // Empty after a rest: the samples are too old.
    const auto first = std::find_if(_trail.begin(), _trail.end(),
                                    [&](const Sample& sample) { return time - sample.time <= trailTime; });
    if (first == _trail.end() || first->time >= time) return {};
    const Sample& last = _trail.back();
    const auto seconds = static_cast<float>(time - first->time);
    return {(last.at.x - first->at.x) / seconds, (last.at.y - first->at.y) / seconds};
}

void Gestures::pinch() {
    const float span = distance(_fingers[0].at, _fingers[1].at);
    if (_span <= 0) {
        _span = span;
    } else if (span >= _span * pinchStep || span * pinchStep <= _span) {
        const float factor = span / _span;
        _span = span;
        _sink(Pinch{factor});
    }
}

void Gestures::wheel(double notches) {
    _wheel += notches;
    for (; _wheel >= 1; _wheel -= 1) _sink(Pinch{wheelStep});
    for (; _wheel <= -1; _wheel += 1) _sink(Pinch{1 / wheelStep});
}

Gestures::Finger* Gestures::find(std::int64_t finger) {
    const auto found = std::find_if(_fingers.begin(), _fingers.end(), [&](const Finger& f) { return f.id == finger; });
    return found == _fingers.end() ? nullptr : &*found;
}

}  // namespace zetplay
