#include "views/commonmotion.h"

#include <algorithm>
#include <cmath>

namespace zet::ZETShow {

namespace {

constexpr float pinchStep = 0.055f;
constexpr float greatestScale = 4.0f;
constexpr double panPerPixel = 0.001;  // view units, at a zoom of 1
constexpr float heldStill = 0.4f;      // pixels, both ways together: a longer drag ends a running animation

bool within(float value, int end) {
    return value >= 0.0f && value <= static_cast<float>(end);
}

}  // namespace

float CommonMotion::limited(float scale) const {
    if (scale > _maxScale) return _maxScale;
    return scale < _minScale ? _minScale : scale;
}

void CommonMotion::setScale(float scale) {
    _scale = limited(scale);  // one store: a frame that is being drawn never sees the zoom beyond its bounds
}

void CommonMotion::step() {
    if (_zoomAnimating) stepZoomAnimation();
    clampPan();
}

void CommonMotion::clampScale() {
    _scale.update([this](float scale) { return limited(scale); });
}

void CommonMotion::clampPan() {
    clampScale();
    const float edge = _scale - 1.0f;
    for (Relaxed<float>* const pan : {&_panX, &_panY}) {
        pan->update([edge](float moved) { return std::min(std::max(moved, -edge), edge); });
    }
}

bool CommonMotion::pinch(float factor) {
    _zoomAnimating = 0;
    _scale.update([this, factor](float scale) { return limited(scale + (factor > 1.0f ? pinchStep : -pinchStep)); });
    return true;
}

bool CommonMotion::doubleTap(float x, float y) {
    if (within(x, _surfaceWidth) && within(y, _surfaceHeight)) _zoomAnimating = 1;
    return true;
}

bool CommonMotion::drag(float x1, float y1, float x2, float y2) {
    if (!(x2 > 0.0f && y2 > 0.0f && within(x2, _surfaceWidth) && within(y2, _surfaceHeight))) return true;
    const float d = x1 - x2;
    const float e = y1 - y2;
    _panY.update([this, e](float pan) { return static_cast<float>(pan - e * panPerPixel * _scale); });
    _panX.update([this, d](float pan) { return static_cast<float>(pan + d * panPerPixel * _scale); });
    if (std::fabs(d) + std::fabs(e) > heldStill) _zoomAnimating = 0;
    return true;
}

void CommonMotion::stepZoomAnimation() {
    if (_zoomDirection == 0.0f && _scale > _minScale && _scale <= _maxScale) {
        _zoomDirection = -1.0f;
        _panStepX = _panX * _zoomStep / (_scale - _minScale);
        _panStepY = _panY * _zoomStep / (_scale - _minScale);
    }
    if (_zoomDirection == 0.0f && _scale <= _minScale) {
        _zoomDirection = 1.0f;
        _panStepX = 0.0f;
        _panStepY = 0.0f;
    }
    if (_zoomDirection == 0.0f) return;
    _panX += _panStepX * _zoomDirection;
    _panY += _panStepY * _zoomDirection;
    bool arrived = false;
    _scale.update([this, &arrived](float scale) {
        const float wanted = scale + _zoomStep * _zoomDirection;
        const float applied = limited(wanted);
        arrived = applied != wanted;
        return applied;
    });
    if (arrived) {
        _zoomAnimating = 0;
        _zoomDirection = 0.0f;
    }
}

void CommonMotion::setMaxScale(float maxScale) {
    // Below 1 the upper bound would undercut the lower one, and the zoom would jump between them.
    _maxScale = std::clamp(maxScale, 1.0f, greatestScale);
    clampScale();
}

}  // namespace zet::ZETShow
