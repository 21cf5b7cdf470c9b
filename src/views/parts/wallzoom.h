#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// Factors on two of the dome's axes: across and in depth.
struct DomeStretch {
    float x;
    float z;
};

/// What tells the two one-pane wall views apart. Degrees and dome units.
struct WallZoomSettings {
    float farEyeZ;      // camera of the wide rest
    float nearEyeZ;     // and the closest one
    float closeMargin;  // a pinched camera that is nearer than farEyeZ by more rests close
    float pinchStep;    // of the camera, whatever the size of the pinch
    float yawLimitMax;  // turns to either side at nearEyeZ
    float pitchLimitMax;
    bool tapRecallsFlight;  // a double tap turns a flight in back that has just begun; else flights ignore taps
    DomeStretch farStretch;
    DomeStretch nearStretch;
};

inline constexpr WallZoomSettings wallOneZoom = {
    .farEyeZ = 6.0f,
    .nearEyeZ = 3.0f,
    .closeMargin = 0.2f,
    .pinchStep = 0.115425f,
    .yawLimitMax = 32.0f,
    .pitchLimitMax = 26.0f,
    .tapRecallsFlight = false,
    .farStretch = {1.0f, 1.25f},
    .nearStretch = {1.05f, 0.7f},
};

inline constexpr WallZoomSettings wallOne180Zoom = {
    .farEyeZ = 6.4f,
    .nearEyeZ = -0.8f,
    .closeMargin = 0.5f,
    .pinchStep = 0.029925f,
    .yawLimitMax = 60.0f,
    .pitchLimitMax = 32.0f,
    .tapRecallsFlight = true,
    .farStretch = {1.0f, 0.0f},
    .nearStretch = {1.05f, 0.8f},
};

/// A camera on the axis of a dome that rests far out, where it can't turn, or close, where it can, and flies between
/// the two: the motion of one of the one-pane wall views, and most of the other's. Before the first layout gestures do
/// nothing but stop the sweep.
struct WallZoom : Motion {
    enum class Phase { wideRest, flyingIn, closeRest, flyingOut };

    explicit WallZoom(const WallZoomSettings& settings) : _settings(settings) {}

    // Setter's thread.
    bool touchDown(float x, float y) override;
    /// One step nearer for a factor above 1, otherwise one step back.
    bool pinch(float factor) override;
    /// Flies to the other rest.
    bool doubleTap(float x, float y) override;
    /// Turns the camera if the second point lies on the surface.
    bool drag(float x1, float y1, float x2, float y2) override;
    /// Comes close and sweeps from side to side.
    void setAutoRotate(bool on, float) override;  // at one speed

    // Render thread.
    /// One frame: the sweep, the flight or what pinches ask for; then the dome's stretch.
    void step() override;
    /// Holds yaw and pitch within what the camera's distance allows, and the pinched distance within its range.
    void clampView();
    /// The camera into the view matrix; the dome, turned by a half circle, into the model matrix.
    void updateCamera(MatrixState& matrices) const;
    Phase phase() const;

    const WallZoomSettings _settings;

    // Gestures and frames.
    SurfaceSize _size;
    Relaxed<float> _yaw = 0.0f;                      // degrees beside the dome's axis, positive looks to the right
    Relaxed<float> _pitch = 0.0f;                    // the same, positive looks down
    Relaxed<float> _targetEyeZ = _settings.farEyeZ;  // where pinches want the camera
    Relaxed<bool> _wantClose = false;                // with `_atWide`: see `phase`
    Relaxed<bool> _flightBusy = false;               // a flight moves the camera
    Relaxed<bool> _autoRotate = false;

    // Render thread.
    float _eyeZ = _settings.farEyeZ;
    float _previousEyeZ = _settings.farEyeZ;  // of the last frame without a flight
    bool _atWide = false;  // the last rest was the wide one; false at first, so that the first frame ends a flight out
    bool _flightStarted = false;
    float _flightSpan = 0.0f;  // what a flight out began with: the way ahead, and the turns
    float _flightYaw = 0.0f;
    float _flightPitch = 0.0f;
    int _sweepDirection = -1;

    // Worked out each frame. Render thread.
    float _yawLimit = 0.0f;  // degrees
    float _pitchLimit = 0.0f;
    DomeStretch _stretch = _settings.farStretch;

private:
    void fling(float velocityX, float velocityY) override;
    bool isFar() const;
    void rest(bool close);
    void stepByHand();
    bool stepFlightIn();
    bool stepFlightOut();
    void stepSweep();
    void updateStretch();
};

}  // namespace zet::ZETShow
