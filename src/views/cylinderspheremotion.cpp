#include "views/cylinderspheremotion.h"

#include <algorithm>

#include "views/parts/angles.h"

namespace zet::ZETShow {

namespace {

constexpr double degreesPerPixel = 0.1125;
constexpr double flingRight = 6.075001 / 1000;         // degrees a frame, for a velocity of one pixel a second
constexpr double flingLeft = 7.5937505 / 1000;         // the same for a fling to the left
constexpr double autoPerFrame = 0.039375001564621925;  // degrees
constexpr float pinchStep = 0.077175f;
constexpr float greatestZoom = 1.0f;

}  // namespace

void CylinderSphereMotion::drag(float x1, float y1, float x2, float y2) {
    _autoRotate = 0;
    _tilt = heldSum(_tilt, (y1 - y2) * degreesPerPixel);
    _spin = heldSum(_spin, (x2 - x1) * degreesPerPixel);
}

void CylinderSphereMotion::pinch(float factor) {
    _autoRotate = 0;
    _zoom += factor > 1.0f ? -pinchStep : pinchStep;
}

void CylinderSphereMotion::setAutoRotate(bool on, float speed) {
    _autoRotate = on;
    _autoRotateSpeed = speed;
}

void CylinderSphereMotion::fling(float velocityX) {
    _autoRotate = 0;
    _spin = heldSum(_spin, velocityX * (velocityX > 0.0f ? flingRight : flingLeft));
}

void CylinderSphereMotion::step() {
    // Each number is read once: a gesture that comes meanwhile is seen by the next frame, whole.
    const float zoom = clampBothWays(_zoom, greatestZoom);
    const float spin = dropWholeTurns(_spin);
    const float tilt = std::clamp(dropWholeTurns(_tilt), _pose.tiltMin, _pose.tiltMax);  // 370 degrees count as 10
    _zoom = zoom;
    _tilt = tilt;
    _spin = static_cast<float>(spin - (_autoRotate ? autoPerFrame : 0.0));
    _shownSpin = spin;
    _shownTilt = _pose.tiltOffset + tilt;
    _eyeZ = _radius + _pose.eyeBase + zoom;
    holdInView(tilt);
}

void CylinderSphereMotion::holdInView(float tilt) {
    const float middle = (_pose.tiltMax + _pose.tiltMin) / 2.0f;
    const float off = tilt - middle;
    if (off < 0.0f) {
        _liftY = off / (_pose.tiltMin - middle) * _pose.liftDown;
    } else {
        const float share = off / (_pose.tiltMax - middle);
        _liftY = share * _pose.liftUp;
        _eyeZ -= share * _pose.approach;
    }
}

}  // namespace zet::ZETShow
