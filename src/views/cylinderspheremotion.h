#pragma once

#include "config/relaxed.h"
#include "render/motion.h"

namespace zet::ZETShow {

/// Where the camera is in front of a shape, and how far the shape may tilt. Degrees and scene units.
struct CylinderSpherePose {
    float eyeBase;     // camera distance beyond the radius
    float approach;    // how much of it the camera gives up on the way to `tiltMax`
    float tiltOffset;  // the tilt that is drawn at a tilt of 0
    float tiltMax;
    float tiltMin;
    float liftUp;    // shift of the scene along y at `tiltMax`
    float liftDown;  // the same at `tiltMin`
};

inline constexpr CylinderSpherePose drumPose = {
    .eyeBase = 16.2f,
    .approach = 0.0f,
    .tiltOffset = -118.307f,
    .tiltMax = 58.123001f,
    .tiltMin = -1.0429993f,
    .liftUp = -0.1536f,
    .liftDown = 0.158f,
};

inline constexpr CylinderSpherePose bowlPose = {
    .eyeBase = 14.05f,
    .approach = 1.5f,
    .tiltOffset = -126.06f,
    .tiltMax = 56.119995f,
    .tiltMin = -4.3200073f,
    .liftUp = -0.0f,
    .liftDown = 0.378f,
};

/// Spin, tilt and distance of the drum or the bowl. Gestures change its numbers, `CylinderSphereRender` draws them.
struct CylinderSphereMotion final : Motion {
    explicit CylinderSphereMotion(const CylinderSpherePose& pose) : _pose(pose) {}

    // Setter's thread. Points are surface pixels.
    bool touchDown(float x, float y) override;
    bool drag(float x1, float y1, float x2, float y2) override;
    /// One step nearer for a factor above 1, otherwise one step back, whatever its size.
    bool pinch(float factor) override;
    void setAutoRotate(bool on, float) override;  // at one speed

    /// One frame: limits, the angles and the camera to draw with, then the automatic turn. Render thread.
    void step() override;

    const CylinderSpherePose _pose;

    // Gestures and frames.
    Relaxed<float> _spin = 0.0f;  // degrees about the shape's axis; more turns the near side to the right
    Relaxed<float> _tilt = 0.0f;  // degrees; more tips the rim away from the viewer
    Relaxed<float> _zoom = 0.0f;  // scene units away from the shape, -1 to 1
    Relaxed<int> _autoRotate = 0;

    // Worked out each frame.
    float _shownSpin = 0.0f;  // degrees
    float _shownTilt = 0.0f;
    float _eyeZ = _radius + _pose.eyeBase;
    float _liftY = 0.0f;  // shift of the scene along y

    static constexpr float _radius = 6.0f;  // of the shape

private:
    void fling(float velocityX, float velocityY) override;
    void holdInView(float tilt);
};

}  // namespace zet::ZETShow
