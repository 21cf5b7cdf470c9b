#include "views/multiviewmotion.h"

#include <algorithm>
#include <cmath>

#include "views/parts/angles.h"

namespace zet::ZETShow {

namespace {

// The camera at rest.
constexpr float baseElevation = -55.0705986f;  // degrees
constexpr float baseMoveY = 2.2072f;
constexpr float baseMoveZ = 1.0399932f;
constexpr float eyeZ = 2.0f;

constexpr float basePan[] = {180.0f, 270.0f, 0.0f, 90.0f};  // degrees: the four sectors

constexpr float elevationPerTilt = 10.0f;        // degrees
constexpr float autoRotateStep = 0.0432692356f;  // degrees at speed 1
constexpr float dragSensitivity = 0.112500004f;  // degrees a pixel, in an enlarged pane; one bit above 0.1125
constexpr float tiltPart = 0.2f;                 // of that, in units of tilt
constexpr float flingRight = 6.075f;             // degrees a frame, for a thousand pixels a second
constexpr float flingLeft = 4.86f;

}  // namespace

void MultiViewMotion::layoutPanes() {
    const int halfWidth = _size._lastWidth / 2;
    const int halfHeight = _size._lastHeight / 2;
    _paneRects[0] = {0, 0, halfWidth, halfHeight};
    _paneRects[1] = {0, halfHeight, halfWidth, halfHeight};
    _paneRects[2] = {halfWidth, halfHeight, halfWidth, halfHeight};
    _paneRects[3] = {halfWidth, 0, halfWidth, halfHeight};
}

int MultiViewMotion::paneAt(float x, float y) const {
    const int width = _size._lastWidth;
    const int height = _size._lastHeight;
    const bool inside = x > 0.0f && y > 0.0f && x <= static_cast<float>(width) && y <= static_cast<float>(height);
    if (!inside) return -1;
    const bool left = x <= static_cast<float>(width / 2);
    const bool upper = y <= static_cast<float>(height / 2);
    if (upper) return left ? 1 : 2;
    return left ? 0 : 3;
}

void MultiViewMotion::updatePaneCamera(int p, MatrixState& matrices) {
    static constexpr float limit = baseElevation / -elevationPerTilt;
    const float tilt = _tilt[p].update([](float value) { return std::clamp(value, 0.0f, limit); });
    const float elevation = tilt * elevationPerTilt + baseElevation;
    const float k = (elevation - baseElevation) / baseElevation;  // 0 at rest, -1 straight at the pole
    lookAlongAxis(matrices, eyeZ);
    matrices.rotateView(180, 0, 0, 1);
    matrices.rotateView(elevation, 1, 0, 0);
    matrixTranslate(matrices._viewMatrix, 0, baseMoveY * k + baseMoveY, baseMoveZ * k + baseMoveZ);
    _pan[p].update(wrapOncePositive);
    // Each pane that is drawn steps all panes that turn.
    if (_autoRotate) stepAutoRotate();
    matrices.rotateView(_pan[p] + basePan[p], 0, 0, 1);
}

void MultiViewMotion::stepAutoRotate() {
    for (int p = 0; p < paneCount; ++p) {
        if (!_paneAutoRotate[p]) continue;
        _pan[p].update([this](float pan) { return wrapOncePositive(heldSum(pan, _autoRotateSpeed * autoRotateStep)); });
    }
}

bool MultiViewMotion::touchDown(float x, float y) {
    const int p = paneAt(x, y);
    if (p >= 0) _paneAutoRotate[p] = false;
    return true;
}

bool MultiViewMotion::doubleTap(float x, float y) {
    if (_zoomed) {
        _zoomed = false;
        return true;
    }
    const int p = paneAt(x, y);
    if (p >= 0) _selectedPane = p;
    _activePane = _selectedPane;
    _zoomed = true;
    return true;
}

bool MultiViewMotion::drag(float x1, float y1, float x2, float y2) {
    const bool zoomed = _zoomed;
    const int p = zoomed ? static_cast<int>(_selectedPane) : paneAt(x2, y2);
    if (p < 0) return true;
    const float turn = (x2 - x1) * dragSensitivity;
    _activePane = p;
    _paneAutoRotate[p] = false;
    addHeld(_pan[p], zoomed ? turn : 2.0f * turn);
    addHeld(_tilt[p], -(y2 - y1) * dragSensitivity * tiltPart);
    return true;
}

void MultiViewMotion::setAutoRotate(bool on, float speed) {
    _autoRotate = on;
    for (Relaxed<bool>& pane : _paneAutoRotate) pane = on;
    _autoRotateSpeed = speed;
}

void MultiViewMotion::fling(float velocityX, float) {
    const int p = _activePane;
    addHeld(_pan[p], velocityX * (velocityX >= 0.0f ? flingRight : flingLeft) / 1000.0f);
    _paneAutoRotate[p] = false;
}

}  // namespace zet::ZETShow
