#include "views/walloneview180motion.h"

#include <cmath>

namespace zet::ZETShow {

namespace {

// Degrees.
constexpr float softYawLimit = 37.0f;  // where the spring lets go
constexpr float softPitchLimit = 0.5f;
constexpr float springStep = 0.3f;  // a frame

// Only whole steps: the angle comes to rest less than one outside the limit.
float sprungBack(float angle, float softLimit) {
    return std::fabs(angle) >= softLimit + springStep ? angle - std::copysign(springStep, angle) : angle;
}

}  // namespace

void WallOneView180Motion::step() {
    if (!_zoom._autoRotate) stepSpring();
    _zoom.step();
}

void WallOneView180Motion::stepSpring() {
    const float yaw = _zoom._yaw;
    const float pitch = _zoom._pitch;
    const bool central = std::fabs(yaw) <= softYawLimit && std::fabs(pitch) <= softPitchLimit;
    if (!_fingerUp || central || _zoom._flightBusy) return;
    _zoom._yaw = sprungBack(yaw, softYawLimit);
    _zoom._pitch = sprungBack(pitch, softPitchLimit);
    _zoom.clampView();
}

void WallOneView180Motion::touchDown(float x, float y) {
    _zoom.touch();
    const auto width = static_cast<float>(_zoom._size._lastWidth);
    const auto height = static_cast<float>(_zoom._size._lastHeight);
    if (x >= 0.0f && x <= width && y >= 0.0f && y <= height) _fingerUp = false;
}

}  // namespace zet::ZETShow
