#include "views/cylindersidemotion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zet::ZETShow {

namespace {

constexpr double dragPerPixel = 0.1125 * 0.02;            // radians
constexpr double flingPerPixel = 0.00012375000759959234;  // radians a frame, for a velocity of one pixel a second
constexpr double autoPerFrame = 0.0021375;                // radians
constexpr double greatestPan = 1000.0;                    // radians
constexpr double wholeTurn = 2.0 * std::numbers::pi;      // radians
constexpr float restEyeZ = 2.0f;                          // the camera's z at a zoom of 0
constexpr float pinchStep = 0.03375f;
constexpr float flightStep = 0.02f;                                 // a frame
constexpr float outerBorder = CylinderSideMotion::_zoomMax - 0.2f;  // a view at rest counts as out from here on

}  // namespace

CylinderSideMotion::Phase CylinderSideMotion::phase() const {
    if (_zoomIn) return _zoomPhase ? Phase::flyingIn : Phase::restingIn;
    return _zoomPhase ? Phase::restingOut : Phase::flyingOut;
}

void CylinderSideMotion::turn(double radians) {
    _pan.update([radians](float before) {
        double pan = before + radians;
        // After days of turning a float would be too large to add a frame's step to. Whole turns are invisible.
        if (std::fabs(pan) > greatestPan) pan = std::remainder(pan, wholeTurn);
        return static_cast<float>(pan);
    });
}

bool CylinderSideMotion::touchDown(float, float) {
    _autoRotate = 0;
    return true;
}

bool CylinderSideMotion::drag(float x1, float, float x2, float) {
    _autoRotate = 0;
    turn((static_cast<double>(x2) - x1) * dragPerPixel);
    return true;
}

bool CylinderSideMotion::pinch(float factor) {
    _autoRotate = 0;
    _zoom += factor > 1.0f ? -pinchStep : pinchStep;
    return true;
}

bool CylinderSideMotion::doubleTap(float, float) {
    if (_zoomBusy) return true;
    const int wanted = _zoomIn ? 0 : 1;
    _zoomIn = wanted;
    _zoomPhase = wanted;
    return true;
}

void CylinderSideMotion::setAutoRotate(bool on, float) {
    _autoRotate = on;
}

void CylinderSideMotion::fling(float velocityX, float) {
    _autoRotate = 0;
    turn(velocityX * flingPerPixel);
}

void CylinderSideMotion::step() {
    switch (phase()) {
        case Phase::flyingOut:
            fly(flightStep, _zoom >= _zoomMax);
            break;
        case Phase::flyingIn:
            fly(-flightStep, _zoom <= _zoomMin);
            break;
        case Phase::restingOut:
        case Phase::restingIn:
            classifyRest();
            break;
    }
    if (_autoRotate) turn(-autoPerFrame);
    _eyeZ = _zoom.update([](float zoom) { return std::clamp(zoom, _zoomMin, _zoomMax); }) + restEyeZ;
    _cut = -_pan;
}

void CylinderSideMotion::fly(float zoomStep, bool arrived) {
    if (arrived) {
        _zoomPhase = _zoomIn ? 0 : 1;
    } else {
        _zoom += zoomStep;
    }
    _zoomBusy = !arrived;  // last: from now on a tap starts the next flight
}

void CylinderSideMotion::classifyRest() {
    const int in = _zoom < outerBorder;
    if (in == _zoomIn) return;  // a store could undo a tap that comes at this moment
    _zoomIn = in;
    _zoomPhase = !in;
}

}  // namespace zet::ZETShow
