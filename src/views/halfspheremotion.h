#pragma once

#include "config/relaxed.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// Pose of the half sphere and of the scene round it. Gestures, flights and springs change its numbers, one `step` a
/// frame; `HalfSphereRender` draws them.
///
/// Angles are degrees, lengths are scene units: the bowl's radius is 6. A positive yaw turns the picture clockwise. The
/// poses form a path. It runs from far, which sees the whole bowl, over near, which looks along its wall, to low, which
/// looks at its rim. `_travel` is the place on it.
struct HalfSphereMotion final : Motion {
    /// At the start of the opening flight, with backdrop and stars.
    HalfSphereMotion();

    // Setter's thread.
    bool touchDown(float x, float y) override;
    bool touchUp(float x, float y) override;
    /// One step along the path in the direction of `factor`, whatever its size.
    bool pinch(float factor) override;
    bool drag(float x1, float y1, float x2, float y2) override;
    /// Flies to the other rest pose, or back to one that gestures have left, and turns the tapped place to the top.
    bool doubleTap(float x, float y) override;
    void setAutoRotate(bool on, float speed) override;
    void setOpeningFlight(bool on) override;
    void setSceneBackdrop(bool backdrop, bool stars) override;

    // Render thread.
    void step() override;
    /// How the picture is spread over the bowl: 0 at the near pose and below it, `_remotenessMax` at the far one.
    float remoteness() const;
    /// Camera for the scene behind the bowl: at the far pose as far away as the bowl's camera; on the way to near it is
    /// ahead of it.
    float parallaxEyeZ() const;
    /// While the scene moves by itself.
    bool asksForDraws() const override { return _opening || _showBack || _showPoints; }

    /// A rest pose in which the view is settled, or the one it flies to.
    enum class Phase { flyingToFar, farRest, flyingToNear, nearRest };
    Phase phase() const;

    struct Pose {
        float eyeZ;
        float pitch;
        float moveZ;
        float moveY;
    };
    Pose farPose() const { return {_farEyeZ, 0.0f, 0.0f, 0.0f}; }

    static constexpr float _radius = 6.0f;
    static constexpr float _remotenessMax = 0.5f;
    static constexpr float _nearEyeZ = 2.0f;
    static constexpr float _nearPitch = -45.560596f;
    static constexpr float _nearMoveY = 1.8790853f;
    static constexpr float _nearMoveZ = 1.3989465f;
    static constexpr float _lowPitch = -92.287971f;
    static constexpr float _lowMoveY = 3.5770595f;
    static constexpr float _lowMoveZ = -0.23966840f;

    SurfaceSize _size;  // as of the last layout

    // Gestures and settings.
    Relaxed<bool> _fingerUp = true;
    Relaxed<bool> _autoRotate = false;
    Relaxed<float> _autoRotateSpeed = 1.0f;
    Relaxed<float> _tapAngle = 160.0f;  // of the last double tap, clockwise from the top of the screen
    Relaxed<bool> _showBack = true;
    Relaxed<bool> _showPoints = true;
    Relaxed<float> _farEyeZ = 7.1f;
    Relaxed<float> _startLift = 1.0f;  // the opening flight starts this far below 0.2

    // Gestures and frames.
    Relaxed<int> _viewTarget = 0;    // the rest pose asked for: 0 far, 1 near
    Relaxed<int> _viewAt = 1;        // the one settled in
    Relaxed<int> _offRest = 0;       // gestures have carried the view away from it
    Relaxed<float> _travel = 0.0f;   // along the path from there: positive towards far, negative towards low
    Relaxed<float> _yaw = 0.0f;      // of the bowl, settled
    Relaxed<float> _eyeZ = 7.1f;     // camera
    Relaxed<bool> _opening = false;  // the opening flight runs

    // Frames.
    float _pitch = 0.0f;     // of the scene, about x
    float _moveZ = 0.0f;     // of the scene
    float _moveY = 0.0f;     // of the scene
    float _shownYaw = 0.0f;  // of the bowl in this frame
    bool _tiltSeen = false;  // has been at or past the near pose since it last settled at the far one
    bool _wasFingerUp = false;

    // The flight between rest poses: a countdown by a fixed step a frame. All four numbers arrive at its end.
    int _animating = 0;  // started, and no rest rule has run since
    int _towardNear = 0;
    float _animLeft = 0.0f;   // of the countdown
    float _animTotal = 0.0f;  // where it began
    float _animSpan = 0.0f;   // the largest of the four distances
    float _yawRate = 160.0f;  // degrees per unit of countdown
    float _eyeSpan = 0.0f;
    float _pitchSpan = 0.0f;  // a twentieth of the distance
    float _moveZSpan = 0.0f;
    float _moveYSpan = 0.0f;
    int _eyeSign = 0;  // 1, -1, or 0 when it has arrived
    int _pitchSign = 0;
    int _moveZSign = 0;
    int _moveYSign = 0;

private:
    void fling(float velocityX, float velocityY) override;
    void stepAutoRotate();
    bool stepSpring();
    void stepPose();
    bool flyTo(const Pose& target);
    void startFlight(const Pose& target);
    void restNear();
    void restFar();
    void tiltPastNear(float pitch);
    void blendFromFar(const Pose& end, float pitch);
    void stepYaw();
    float yawRate() const;
};

}  // namespace zet::ZETShow
