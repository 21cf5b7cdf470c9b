#pragma once

#include "config/relaxed.h"

namespace zet::ZETShow {

/// Zoom and pan of the flat view. Gestures and the animation change its numbers, `CommonRender` draws them.
///
/// A zoom of 1 fits the whole picture. Pan is in view units, 2 of which span the fitted picture; positive moves the
/// picture right and up.
struct FlatMotion {
    /// Sets the zoom within its range; 0 if `scale` lies there, otherwise -1. Any thread.
    int setScale(float scale);
    /// Brings the zoom back into its range. Any thread.
    void clampScale();
    /// Keeps the picture's edges at or beyond the view's. Render thread.
    void clampPan();
    /// One step of zoom in the direction of `factor`, whatever its size. Setter's thread.
    void pinch(float factor);
    /// From the first point to the second, surface pixels. Setter's thread.
    void drag(float x1, float y1, float x2, float y2);
    /// The full zoom, or back from it, in steps to come. Setter's thread.
    void startZoomAnimation() { _zoomAnimating = 1; }
    /// One frame of that. Render thread.
    void stepZoomAnimation();
    /// The upper bound of the zoom, held within 1.0 and 4.0. Setter's thread.
    void setMaxScale(float maxScale);

    // Gestures and frames.
    Relaxed<int> _zoomAnimating = 0;
    Relaxed<float> _panX = 0.0f;
    Relaxed<float> _panY = 0.0f;
    Relaxed<float> _scale = 1.0f;
    Relaxed<float> _maxScale = 4.0f;

    // The animation's own.
    float _zoomDirection = 0.0f;  // 0 idle, 1 zooming in, -1 zooming out
    float _panStepX = 0.0f;       // per frame, applied with the sign of the direction
    float _panStepY = 0.0f;

    static constexpr float _minScale = 1.0f;
    static constexpr float _zoomStep = 0.06f;  // per frame

private:
    float limited(float scale) const;
};

}  // namespace zet::ZETShow
