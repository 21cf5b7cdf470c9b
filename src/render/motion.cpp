#include "render/motion.h"

#include <cmath>

namespace zet::ZETShow {

namespace {

constexpr double flingDecay = 0.9;      // of the velocity, a frame
constexpr float flingEnd = 0.5f;        // pixels a second: slower inertia stops
constexpr float flingThreshold = 0.1f;  // pixels a second: a slower fling starts nothing

}  // namespace

bool Motion::touchDown(float, float) {
    return false;
}

bool Motion::touchUp(float, float) {
    return false;
}

bool Motion::pinch(float) {
    return false;
}

bool Motion::doubleTap(float, float) {
    return false;
}

bool Motion::drag(float, float, float, float) {
    return false;
}

void Motion::setAutoRotate(bool, float) {}

void Motion::setOpeningFlight(bool) {}

void Motion::setSceneBackdrop(bool, bool) {}

void Motion::fling(float, float) {}

void Motion::step() {}

bool Motion::asksForDraws() const {
    return false;
}

void Motion::startFling(float velocityX, float velocityY) {
    if (std::fabs(velocityX) <= flingThreshold && std::fabs(velocityY) <= flingThreshold) return;
    _velocityX = velocityX;
    _velocityY = velocityY;
    _flings = true;
}

void Motion::stepFling() {
    if (!_flings) return;
    const auto slower = [](float velocity) { return static_cast<float>(velocity * flingDecay); };
    const float velocityX = _velocityX.update(slower);
    const float velocityY = _velocityY.update(slower);
    if (std::fabs(velocityX) < flingEnd && std::fabs(velocityY) < flingEnd) {
        _flings = false;
        return;
    }
    fling(velocityX, velocityY);
}

}  // namespace zet::ZETShow
