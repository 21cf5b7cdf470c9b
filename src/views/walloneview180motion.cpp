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
    const bool central = std::fabs(_zoom._yaw) <= softYawLimit && std::fabs(_zoom._pitch) <= softPitchLimit;
    if (!_fingerUp || central || _zoom._flightBusy) return;
    _zoom._yaw.update([](float yaw) { return sprungBack(yaw, softYawLimit); });
    _zoom._pitch.update([](float pitch) { return sprungBack(pitch, softPitchLimit); });
    _zoom.clampView();
}

void WallOneView180Motion::touchDown(float x, float y) {
    _zoom.touch();
    const auto width = static_cast<float>(_zoom._size._lastWidth);
    const auto height = static_cast<float>(_zoom._size._lastHeight);
    if (x >= 0.0f && x <= width && y >= 0.0f && y <= height) _fingerUp = false;
}

}  // namespace zet::ZETShow
