#include "views/walloneview180motion.h"

#include <cmath>

namespace zet::ZETShow {

namespace {

// Degrees.
constexpr float softYawLimit = 37.0f;  // where the spring lets go
constexpr float softPitchLimit = 0.5f;
constexpr float springStep = 0.3f;  // a frame

// Only whole steps: the angle comes to rest less than a step outside the limit.
float sprungBack(float angle, float softLimit) {
    return std::fabs(angle) >= softLimit + springStep ? angle - std::copysign(springStep, angle) : angle;
}

}  // namespace

void WallOneView180Motion::step() {
    if (!_autoRotate) stepSpring();
    WallZoom::step();
}

void WallOneView180Motion::stepSpring() {
    const bool central = std::fabs(_yaw) <= softYawLimit && std::fabs(_pitch) <= softPitchLimit;
    if (!_fingerUp || central || _flightBusy) return;
    _yaw.update([](float yaw) { return sprungBack(yaw, softYawLimit); });
    _pitch.update([](float pitch) { return sprungBack(pitch, softPitchLimit); });
    clampView();
}

bool WallOneView180Motion::touchDown(float x, float y) {
    WallZoom::touchDown(x, y);
    const auto width = static_cast<float>(_size._lastWidth);
    const auto height = static_cast<float>(_size._lastHeight);
    if (x >= 0.0f && x <= width && y >= 0.0f && y <= height) _fingerUp = false;
    return true;
}

bool WallOneView180Motion::touchUp(float, float) {
    _fingerUp = true;
    return true;
}

}  // namespace zet::ZETShow
