#include "views/halfspheremotion.h"

#include <algorithm>
#include <cmath>

#include "views/parts/angles.h"

namespace zet::ZETShow {

namespace {

constexpr HalfSphereMotion::Pose nearPose = {HalfSphereMotion::_nearEyeZ, HalfSphereMotion::_nearPitch,
                                             HalfSphereMotion::_nearMoveZ, HalfSphereMotion::_nearMoveY};

// Gestures.
constexpr double yawPerPixel = 1.8 * 0.1125;            // degrees
constexpr double travelPerPixel = 0.1125 * 0.1;         // of a vertical drag
constexpr double travelPerPinch = 0.07875;              // whatever the factor
constexpr double yawPerFling = 6.075001 / 1000.0;       // degrees a frame, for each pixel a second
constexpr double yawPerRotation = 0.08653846497719105;  // degrees a frame, at a speed of 1

// Rest poses.
constexpr float pitchPerTravel = 18.0f;  // degrees
constexpr float offRestTravel = -0.1f;   // at the far pose
constexpr float springStep = 1.0f;       // degrees a frame
constexpr float openingStart = 0.2f;     // camera at the start of the opening flight, less `_startLift`
constexpr float backLift = 1.0f;         // `_startLift` with a backdrop
constexpr float bareLift = 2.1f;         // `_startLift` without one
constexpr float backFarEyeZ = HalfSphereMotion::_radius * 1.5f - 1.0f - 0.9f;
constexpr float bareFarEyeZ = HalfSphereMotion::_radius + 0.1f;

// Flights.
constexpr float animStep = 0.12f;          // of the countdown, a frame
constexpr float pitchSpanDivisor = 20.0f;  // so many degrees count as one unit of length
constexpr float pitchStep = 2.4f;          // 20 times `animStep`
constexpr float returnYawRate = pitchStep * 10.0f;
constexpr float openingYawRate = pitchStep * 1.9f * 10.0f;  // one full turn with a backdrop

constexpr float degreesPerRadian = 180.0f / 3.1415926f;

// One of the four numbers of a flight.
void startWay(float from, float to, float& span, int& sign) {
    span = std::fabs(to - from);
    sign = to > from ? 1 : to < from ? -1 : 0;
}

// Steps towards `to`. With less than a step left the number stops where it is. It also stops where a setting has moved
// the target behind it.
float advance(float from, float to, float step, int& sign) {
    const float value = from + step * static_cast<float>(sign);
    if (step > (to - value) * static_cast<float>(sign)) sign = 0;
    return value;
}

}  // namespace

HalfSphereMotion::HalfSphereMotion() {
    setSceneBackdrop(true, true);
    setOpeningFlight(true);
}

HalfSphereMotion::Phase HalfSphereMotion::phase() const {
    if (_viewTarget == 0) return _viewAt == 0 ? Phase::farRest : Phase::flyingToFar;
    return _viewAt == 0 ? Phase::flyingToNear : Phase::nearRest;
}

float HalfSphereMotion::remoteness() const {
    const float share = (_eyeZ - _nearEyeZ) * _remotenessMax / (_farEyeZ - _nearEyeZ);
    return std::clamp(share, 0.0f, _remotenessMax);
}

float HalfSphereMotion::parallaxEyeZ() const {
    const float farEyeZ = _farEyeZ;
    const float d = _eyeZ - farEyeZ;
    const float s = (farEyeZ - _nearEyeZ) * (farEyeZ - _nearEyeZ);
    if (d > 0.0f) return farEyeZ + d * (1.0f + 0.5f * d * d / s);
    return std::max(farEyeZ + d * (1.0f + 2.3f * d * d / s), 0.0f);
}

void HalfSphereMotion::step() {
    stepAutoRotate();
    if (!stepSpring()) stepPose();
    stepYaw();
}

void HalfSphereMotion::stepAutoRotate() {
    if (!_autoRotate) return;
    _yaw.update([this](float yaw) { return wrapOnceSigned(heldSum(yaw, _autoRotateSpeed * yawPerRotation)); });
}

bool HalfSphereMotion::stepSpring() {
    const bool fingerUp = _fingerUp;
    const bool tilted = _pitch < _nearPitch && !_animating;
    if (fingerUp && tilted) {
        tiltPastNear(std::min(_pitch + springStep, _nearPitch));
        if (_pitch >= _nearPitch) {
            _tiltSeen = true;
            _travel = _viewTarget == 0 ? _nearPitch / pitchPerTravel : 0.0f;
        }
        _wasFingerUp = true;
        return true;
    }
    if (!fingerUp && _wasFingerUp && tilted) {
        // A finger has caught the springing view, which goes on from here.
        _tiltSeen = true;
        _travel = (_viewTarget == 0 ? _pitch : _pitch - _nearPitch) / pitchPerTravel;
    }
    _wasFingerUp = fingerUp;
    return false;
}

void HalfSphereMotion::stepPose() {
    switch (phase()) {
        case Phase::flyingToNear:
            if (flyTo(nearPose)) {
                _viewAt = 1;
                _travel = 0.0f;
                _tiltSeen = true;
            } else {
                _towardNear = 1;
            }
            break;
        case Phase::nearRest:
            restNear();
            break;
        case Phase::flyingToFar:
            if (flyTo(farPose())) {
                _viewAt = 0;
                _travel = 0.0f;
                _tiltSeen = false;
            } else {
                _towardNear = 0;
            }
            break;
        case Phase::farRest:
            restFar();
            break;
    }
}

void HalfSphereMotion::startFlight(const Pose& target) {
    startWay(_eyeZ, target.eyeZ, _eyeSpan, _eyeSign);
    startWay(_pitch, target.pitch, _pitchSpan, _pitchSign);
    startWay(_moveZ, target.moveZ, _moveZSpan, _moveZSign);
    startWay(_moveY, target.moveY, _moveYSpan, _moveYSign);
    _pitchSpan /= pitchSpanDivisor;
    _animSpan = std::max({_eyeSpan, _pitchSpan, _moveZSpan, _moveYSpan});
    _animTotal = _animSpan;
    _animLeft = _animSpan;
    _animating = 1;
}

// True when the flight is over. The next frame's rest rule then sets the exact pose.
bool HalfSphereMotion::flyTo(const Pose& target) {
    if (!_animating) startFlight(target);
    const float shownLeft = _animLeft;
    _animLeft -= animStep;
    if (animStep > _animLeft) {
        _eyeSign = _pitchSign = _moveZSign = _moveYSign = 0;
        _animLeft = 0.0f;
        return true;
    }
    if (!_eyeSign && !_pitchSign && !_moveZSign && !_moveYSign) {
        // All four arrived early, since a setting has brought the target nearer: the yaw stays as shown.
        _animTotal -= shownLeft;
        _animLeft = 0.0f;
        return true;
    }
    _eyeZ = advance(_eyeZ, target.eyeZ, animStep * _eyeSpan / _animSpan, _eyeSign);
    _pitch = advance(_pitch, target.pitch, pitchStep * _pitchSpan / _animSpan, _pitchSign);
    _moveZ = advance(_moveZ, target.moveZ, animStep * _moveZSpan / _animSpan, _moveZSign);
    _moveY = advance(_moveY, target.moveY, animStep * _moveYSpan / _animSpan, _moveYSign);
    return false;
}

void HalfSphereMotion::stepYaw() {
    _yaw.update(dropWholeTurns);
    if (animStep > _animLeft) {
        addHeld(_yaw, (_animTotal - _animLeft) * _yawRate);
        _animTotal = 0.0f;
        _animLeft = 0.0f;
        _yawRate = 0.0f;
        _shownYaw = _yaw;
        _opening = false;
        return;
    }
    if (_animTotal > 0.0f) _yawRate = yawRate();
    _shownYaw = _yaw + (_animTotal - _animLeft) * _yawRate;
}

// On the way to near the tapped direction turns to the top of the screen, where the near pose looks. The turn stops
// short by up to 10 degrees for a tap on the upper half, by up to 55 for one on the lower half.
float HalfSphereMotion::yawRate() const {
    if (!_towardNear) return _opening ? openingYawRate : returnYawRate;
    const float a = _tapAngle;
    if (a >= 0.0f && a <= 180.0f) {
        const float c = 90.0f - std::fabs(a - 90.0f);
        return -(a - c * (a > 90.0f ? 55.0f : 10.0f) / 90.0f) / _animTotal;
    }
    const float b = 360.0f - a;
    const float c = 90.0f - std::fabs(b - 90.0f);
    return (b - c * (a < 270.0f ? 55.0f : 10.0f) / 90.0f) / _animTotal;
}

void HalfSphereMotion::restNear() {
    const float farEyeZ = _farEyeZ;
    const float span = farEyeZ - _nearEyeZ;
    _animating = 0;
    const bool held = _tiltSeen && !_fingerUp;
    const float least = held ? (_lowPitch - _nearPitch) / pitchPerTravel : 0.0f;
    const float travel = _travel.update([least, span](float value) { return std::clamp(value, least, span); });
    _offRest = travel > 0.0f && _nearEyeZ + travel >= farEyeZ;
    if (travel > 0.0f) {
        const float u = 1.0f - travel / span;
        _eyeZ = std::min(_nearEyeZ + travel, farEyeZ);
        _pitch = _nearPitch * u;
        _moveY = _nearMoveY * u;
        _moveZ = _nearMoveZ * u;
    } else if (held) {
        tiltPastNear(std::clamp(travel * pitchPerTravel + _nearPitch, _lowPitch, 0.0f));
    } else {
        _eyeZ = nearPose.eyeZ;
        _pitch = nearPose.pitch;
        _moveZ = nearPose.moveZ;
        _moveY = nearPose.moveY;
    }
}

void HalfSphereMotion::restFar() {
    _animating = 0;
    const float travel =
        _travel.update([](float value) { return std::clamp(value, _lowPitch / pitchPerTravel, 0.0f); });
    if (travel == 0.0f) _offRest = 0;
    if (travel <= offRestTravel) _offRest = 1;
    const float pitch = std::clamp(travel * pitchPerTravel, _lowPitch, 0.0f);
    if (!_tiltSeen) {
        blendFromFar({_nearEyeZ, _lowPitch, _lowMoveZ, _lowMoveY}, pitch);
    } else if (pitch <= _nearPitch) {
        tiltPastNear(pitch);
    } else {
        blendFromFar(nearPose, pitch);
    }
}

// Linear between the near pose and the low one.
void HalfSphereMotion::tiltPastNear(float pitch) {
    const float u = (pitch - _lowPitch) / (_nearPitch - _lowPitch);
    _pitch = pitch;
    _eyeZ = _nearEyeZ;
    _moveY = _lowMoveY + (_nearMoveY - _lowMoveY) * u;
    _moveZ = _lowMoveZ + (_nearMoveZ - _lowMoveZ) * u;
}

// Linear between the far pose and `end`.
void HalfSphereMotion::blendFromFar(const Pose& end, float pitch) {
    const float u = (pitch - end.pitch) / (0.0f - end.pitch);
    _pitch = pitch;
    _moveY = end.moveY * (1.0f - u);
    _moveZ = end.moveZ * (1.0f - u);
    _eyeZ = end.eyeZ + (_farEyeZ - end.eyeZ) * u;
}

bool HalfSphereMotion::touchDown(float, float) {
    _fingerUp = false;
    _autoRotate = false;
    return true;
}

bool HalfSphereMotion::touchUp(float, float) {
    _fingerUp = true;
    return true;
}

bool HalfSphereMotion::pinch(float factor) {
    _autoRotate = false;
    addHeld(_travel, factor > 1.0f ? -travelPerPinch : travelPerPinch);
    return true;
}

bool HalfSphereMotion::drag(float x1, float y1, float x2, float y2) {
    _autoRotate = false;
    addHeld(_yaw, (x2 - x1) * yawPerPixel);
    addHeld(_travel, -(y2 - y1) * travelPerPixel);
    return true;
}

bool HalfSphereMotion::doubleTap(float x, float y) {
    if (_offRest) {
        _viewAt = 1 - _viewAt;
    } else {
        _viewTarget = 1 - _viewTarget;
    }
    const float right = x - static_cast<float>(_size._lastWidth / 2);
    const float down = y - static_cast<float>(_size._lastHeight / 2);
    if (right == 0.0f && down == 0.0f) return true;  // no direction
    const float slope = std::atan(down / right) * degreesPerRadian;
    _tapAngle = slope + (right > 0.0f ? 90.0f : 270.0f);
    return true;
}

void HalfSphereMotion::fling(float velocityX, float) {
    _autoRotate = false;
    addHeld(_yaw, velocityX * yawPerFling);
}

void HalfSphereMotion::setAutoRotate(bool on, float speed) {
    _autoRotate = on;
    _autoRotateSpeed = speed;
}

void HalfSphereMotion::setOpeningFlight(bool on) {
    if (!on) {
        _eyeZ = static_cast<float>(_farEyeZ);
        return;
    }
    _eyeZ = openingStart - _startLift;
    _opening = true;
}

void HalfSphereMotion::setSceneBackdrop(bool backdrop, bool stars) {
    const bool atStart = _opening && _eyeZ == openingStart - _startLift;
    _farEyeZ = backdrop ? backFarEyeZ : bareFarEyeZ;
    _startLift = backdrop ? backLift : bareLift;
    if (atStart) _eyeZ = openingStart - _startLift;  // no frame yet: start the flight where this backdrop has it
    _showBack = backdrop;
    _showPoints = stars;
}

}  // namespace zet::ZETShow
