#pragma once

#include "config/relaxed.h"
#include "render/motion.h"

namespace zet::ZETShow {

/// Zoom and pan of the flat view. Gestures and the animation change its numbers, `CommonRender` draws them.
///
/// A zoom of 1 fits the whole picture. Pan is in view units, 2 of which span the fitted picture. Positive pan moves the
/// picture right and up.
struct CommonMotion final : Motion {
    // Setter's thread. Gestures beside the surface of the last layout do nothing.
    /// One step of zoom in the direction of `factor`, whatever its size.
    bool pinch(float factor) override;
    /// Starts the animation: to the full zoom or back from it.
    bool doubleTap(float x, float y) override;
    bool drag(float x1, float y1, float x2, float y2) override;
    /// Sets the zoom, held within its range.
    void setScale(float scale);
    /// The upper bound of the zoom, held within 1.0 and 4.0.
    void setMaxScale(float maxScale);

    // Render thread.
    /// One frame of the animation, then the limits: the picture's edges stay at or beyond the view's.
    void step() override;
    bool asksForDraws() const override { return _zoomAnimating; }

    // Settings.
    Relaxed<unsigned> _rotation = 0u;  // degrees clockwise: 0, 90, 180 or 270

    // Gestures and frames.
    Relaxed<int> _surfaceWidth = 0;  // pixels, as of the last layout
    Relaxed<int> _surfaceHeight = 0;
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
    void stepZoomAnimation();
    void clampScale();
    void clampPan();
    float limited(float scale) const;
};

}  // namespace zet::ZETShow
