#include "views/parts/wallzoom.h"

#include <algorithm>
#include <cmath>

#include "views/parts/angles.h"

namespace zet::ZETShow {

namespace {

// Degrees and dome units.
constexpr float flightStep = 0.05f;       // a frame
constexpr double sweepApproach = 0.05;    // a frame
constexpr double sweepTurn = 0.2;         // a frame
constexpr float sweepCloseMargin = 0.2f;  // as `closeMargin`, for the sweep's approach
constexpr float lockedPart = 0.95f;       // of farEyeZ: from there on the camera can't turn
constexpr float farSlack = 0.0001f;       // sums of steps don't meet the end exactly
constexpr float levelSlack = 0.001f;
constexpr double dragSensitivity = 0.075;  // a pixel
constexpr float flingTurn = 0.40500003f;   // for a thousand pixels a second, in each frame; one bit above 0.405

void hold(Relaxed<float>& number, float least, float most) {
    number.update([least, most](float loose) { return std::clamp(loose, least, most); });
}

// The angle one step nearer to 0.
float steppedToZero(float angle, float step) {
    return std::fabs(angle) > std::fabs(step) ? angle - step : 0.0f;
}

}  // namespace

WallZoom::Phase WallZoom::phase() const {
    if (_wantClose) return _atWide ? Phase::flyingIn : Phase::closeRest;
    return _atWide ? Phase::wideRest : Phase::flyingOut;
}

void WallZoom::step() {
    if (_autoRotate) stepSweep();
    switch (phase()) {
        case Phase::wideRest:
        case Phase::closeRest:
            stepByHand();
            break;
        case Phase::flyingIn:
            if (stepFlightIn()) _atWide = false;
            clampView();
            break;
        case Phase::flyingOut:
            if (stepFlightOut()) _atWide = true;
            clampView();
            break;
    }
    updateStretch();
}

void WallZoom::stepByHand() {
    clampView();  // by the camera of the last frame
    const float target = _targetEyeZ;
    _eyeZ = std::clamp(target, _settings.nearEyeZ, _settings.farEyeZ);  // a pinch may have come since
    const float back = _eyeZ - _previousEyeZ;
    const float wayLeft = _settings.farEyeZ - _eyeZ;
    if (back > 0.0f && wayLeft > 1e-7f) {
        _pitch -= _pitch * back / wayLeft;
        _yaw -= _yaw * back / wayLeft;
    }
    if (isFar()) {
        _pitch = 0.0f;
        _yaw = 0.0f;
    }
    _previousEyeZ = _eyeZ;
    const bool close = _eyeZ < _settings.farEyeZ - _settings.closeMargin;
    if (_flightBusy) {
        // A double tap has turned a flight in back. If the camera is close already, the flight goes on.
        _wantClose = close;
        _atWide = close;
        if (!close) _flightStarted = false;
    } else if (_atWide == close) {
        rest(close);  // only a crossing is stored: it must not undo a tap that came since
    }
}

bool WallZoom::stepFlightIn() {
    if (_eyeZ < _settings.nearEyeZ + flightStep) {
        _flightBusy = false;
        _flightStarted = false;
        return true;
    }
    _eyeZ -= flightStep;
    _targetEyeZ = _eyeZ;
    _flightBusy = true;
    _flightStarted = true;
    return false;
}

bool WallZoom::stepFlightOut() {
    if (isFar() && std::fabs(_pitch) < levelSlack && std::fabs(_yaw) < levelSlack) {
        _flightStarted = false;
        _flightBusy = false;
        return true;
    }
    if (!_flightStarted) {
        _flightPitch = _pitch;
        _flightYaw = _yaw;
        _flightSpan = _settings.farEyeZ - _eyeZ;
        _flightStarted = true;
        return false;
    }
    _eyeZ = std::min(_eyeZ + flightStep, _settings.farEyeZ);
    _targetEyeZ = _eyeZ;
    _yaw = steppedToZero(_yaw, _flightYaw * flightStep / _flightSpan);
    _pitch = steppedToZero(_pitch, _flightPitch * flightStep / _flightSpan);
    _flightBusy = true;
    return false;
}

void WallZoom::stepSweep() {
    const float limit = _settings.yawLimitMax;
    hold(_yaw, -limit, limit);
    if (_eyeZ > _settings.nearEyeZ) {
        if (_flightBusy) {
            _flightBusy = false;
            _flightStarted = false;
        }
        _eyeZ = std::max(static_cast<float>(_eyeZ - sweepApproach), _settings.nearEyeZ);
        rest(_eyeZ < _settings.farEyeZ - sweepCloseMargin);
        _targetEyeZ = _eyeZ;
        return;
    }
    const auto yaw = static_cast<float>(_yaw + _sweepDirection * sweepTurn);
    if (yaw >= limit) _sweepDirection = -1;
    if (yaw <= -limit) _sweepDirection = 1;
    _yaw = clampBothWays(yaw, limit);
}

void WallZoom::clampView() {
    hold(_targetEyeZ, _settings.nearEyeZ, _settings.farEyeZ);
    const float top = _settings.farEyeZ * lockedPart;
    const float out = (_eyeZ - _settings.nearEyeZ) / (top - _settings.nearEyeZ);
    const double share = 1.0 - std::clamp(out, 0.0f, 1.0f);
    // Full at the near end and 0 from the top on, along a quarter of a cosine.
    const auto part = static_cast<float>(1.0 - std::cos(share * 3.1415926 * 0.5));
    _pitchLimit = _settings.pitchLimitMax * part;
    _yawLimit = _settings.yawLimitMax * part;
    hold(_pitch, -_pitchLimit, _pitchLimit);
    hold(_yaw, -_yawLimit, _yawLimit);
}

void WallZoom::updateStretch() {
    const float k = 1.0f - (_eyeZ - _settings.nearEyeZ) / (_settings.farEyeZ - _settings.nearEyeZ);
    const auto between = [k](float far, float near) { return (near - far) * k + far; };
    const DomeStretch& far = _settings.farStretch;
    const DomeStretch& near = _settings.nearStretch;
    _stretch = {between(far.x, near.x), between(far.z, near.z)};
}

void WallZoom::updateCamera(MatrixState& matrices) const {
    lookAlongAxis(matrices, _eyeZ);
    matrixRotate(matrices._modelMatrix, 180, 0, 0, 1);
    matrices.rotateView(-_pitch, 1, 0, 0);
    matrices.rotateView(-_yaw, 0, 1, 0);
}

bool WallZoom::isFar() const {
    return _eyeZ >= _settings.farEyeZ - farSlack;
}

void WallZoom::rest(bool close) {
    _wantClose = close;
    _atWide = !close;
}

bool WallZoom::touchDown(float, float) {
    _autoRotate = false;
    return true;
}

bool WallZoom::pinch(float factor) {
    _autoRotate = false;
    if (!_size._sized) return true;
    _targetEyeZ += factor > 1.0f ? -_settings.pinchStep : _settings.pinchStep;
    return true;
}

bool WallZoom::doubleTap(float, float) {
    _autoRotate = false;
    if (!_size._sized) return true;
    const bool wantClose = _wantClose;
    if (_flightBusy && !(wantClose && _settings.tapRecallsFlight)) return true;
    _wantClose = !wantClose;
    return true;
}

bool WallZoom::drag(float x1, float y1, float x2, float y2) {
    _autoRotate = false;
    if (!_size._sized) return true;
    const auto width = static_cast<float>(_size._lastWidth);
    const auto height = static_cast<float>(_size._lastHeight);
    if (!(x2 > 0.0f && x2 <= width && y2 > 0.0f && y2 <= height)) return true;
    addHeld(_pitch, (y2 - y1) * -dragSensitivity);
    addHeld(_yaw, (x2 - x1) * -dragSensitivity);
    return true;
}

void WallZoom::setAutoRotate(bool on, float) {
    _autoRotate = on;
}

void WallZoom::fling(float velocityX, float) {
    _autoRotate = false;
    if (!_size._sized) return;
    addHeld(_yaw, -velocityX * flingTurn / 1000.0f);
}

}  // namespace zet::ZETShow
