#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The two cameras of the map view, of which only the detail's ever moves. Gestures and frames change its numbers,
/// `MultiViewMapRender` draws them. Touch coordinates are surface pixels, origin at the top left corner.
///
/// The detail's poses form a path, and `_travel` is the place on it: the look straight at the pole at about 4.56, the
/// near pose along the wall at 0, the low pose at about -1.51. Without a finger the pose springs back from below 0.
struct MultiViewMapMotion final : Motion {
    // Setter's thread.
    bool touchDown(float x, float y) override;
    bool touchUp(float x, float y) override;
    /// Only lets go of the detail.
    bool doubleTap(float x, float y) override { return touchUp(x, y); }
    bool drag(float x1, float y1, float x2, float y2) override;
    void setAutoRotate(bool on, float speed) override;

    // Render thread.
    /// One step of the automatic turn, then of the pose.
    void step() override;
    /// Writes the detail's camera into the view matrix.
    void updateDetailCamera(MatrixState& matrices);
    /// The same for the map's, which sees the whole dome from the front.
    static void updateMapCamera(MatrixState& matrices);

    // Gestures and frames.
    SurfaceSize _size;
    Relaxed<float> _yaw = 0.0f;      // turn of the dome in the detail, degrees
    Relaxed<float> _travel = 0.0f;   // along the path; tens of degrees above 0
    Relaxed<bool> _fingerUp = true;  // no finger holds the detail
    Relaxed<int> _activePane = 0;    // which took the last touch: 1 the map, 0 the detail
    Relaxed<bool> _autoRotate = false;
    Relaxed<float> _autoRotateSpeed = 1.0f;

    // The pose and what it remembers. Render thread.
    float _pitch = 0.0f;  // degrees, 0 looks at the pole
    float _moveY = 0.0f;  // shifts of the scene
    float _moveZ = 0.0f;
    bool _tiltSeen = false;  // a finger has caught the tilt, or it has sprung back
    bool _wasFingerUp = false;

private:
    void fling(float velocityX, float velocityY) override;
    void aimFromMap(float x, float y);
    void turn(float angle);
    bool stepSpring();
    void applyRestRule();
    void followLowPath();
};

}  // namespace zet::ZETShow
