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

bool CylinderSphereMotion::touchDown(float, float) {
    _autoRotate = 0;
    return true;
}

bool CylinderSphereMotion::drag(float x1, float y1, float x2, float y2) {
    _autoRotate = 0;
    addHeld(_tilt, (y1 - y2) * degreesPerPixel);
    addHeld(_spin, (x2 - x1) * degreesPerPixel);
    return true;
}

bool CylinderSphereMotion::pinch(float factor) {
    _autoRotate = 0;
    _zoom += factor > 1.0f ? -pinchStep : pinchStep;
    return true;
}

void CylinderSphereMotion::setAutoRotate(bool on, float) {
    _autoRotate = on;
}

void CylinderSphereMotion::fling(float velocityX, float) {
    _autoRotate = 0;
    addHeld(_spin, velocityX * (velocityX > 0.0f ? flingRight : flingLeft));
}

void CylinderSphereMotion::step() {
    const float zoom = _zoom.update([](float value) { return clampBothWays(value, greatestZoom); });
    const float tilt = _tilt.update([this](float angle) {
        return std::clamp(dropWholeTurns(angle), _pose.tiltMin, _pose.tiltMax);  // 370 degrees count as 10
    });
    const double turn = _autoRotate ? autoPerFrame : 0.0;
    _spin.update([this, turn](float angle) {
        _shownSpin = dropWholeTurns(angle);
        return static_cast<float>(_shownSpin - turn);
    });
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
