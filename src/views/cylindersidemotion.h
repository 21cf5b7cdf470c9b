#pragma once

#include "config/relaxed.h"
#include "render/motion.h"

namespace zet::ZETShow {

/// Pan and zoom of the panorama strip. Gestures and the flight of a double tap change its numbers,
/// `CylinderSideRender` draws them.
struct CylinderSideMotion final : Motion {
    enum class Phase { flyingOut, restingOut, flyingIn, restingIn };
    /// Any thread.
    Phase phase() const;

    // Setter's thread. Points are surface pixels; vertical movement does nothing.
    bool touchDown(float x, float y) override;
    bool drag(float x1, float y1, float x2, float y2) override;
    /// One step towards the strip for a factor above 1, otherwise one step back, whatever its size.
    bool pinch(float factor) override;
    /// Starts the flight to the other end; nothing while one is under way.
    bool doubleTap(float x, float y) override;
    void setAutoRotate(bool on, float) override;  // at one speed

    /// One frame: the flight or the rest, the automatic turn, the limits. Render thread.
    void step() override;

    // Gestures and frames.
    Relaxed<float> _pan = 2.035f;  // radians; where the circle is cut
    Relaxed<float> _zoom = 0.0f;   // how far the camera has come nearer, 0 or less
    Relaxed<int> _zoomIn = 0;      // where the double tap wants the view: 0 out, 1 in
    Relaxed<int> _zoomPhase = 0;   // with `_zoomIn`: see `phase`
    Relaxed<int> _zoomBusy = 0;    // the last step of a flight moved the zoom
    Relaxed<int> _autoRotate = 0;

    // Worked out each frame.
    float _eyeZ = 2.0f;   // the camera's z
    float _cut = 1.035f;  // radians; `-_pan`: where the strip begins

    static constexpr float _zoomMin = -0.85f;  // the strip fills the height
    static constexpr float _zoomMax = 0.0f;

private:
    void fling(float velocityX, float velocityY) override;
    void turn(double radians);
    void fly(float zoomStep, bool arrived);
    void classifyRest();
};

}  // namespace zet::ZETShow
