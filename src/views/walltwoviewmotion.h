#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The two cameras of the wall view of two panes, of which only the detail's ever moves, and only by gestures. They
/// change its numbers, `WallTwoViewRender` draws them. Touch coordinates are surface pixels, origin at the top left
/// corner; the overview answers on the left half of the surface.
struct WallTwoViewMotion final : Motion {
    /// Turns the detail part of the way to a place of the overview. Setter's thread.
    bool touchDown(float x, float y) override;
    /// Turns the detail: with the finger where the drag ends on the overview, against it elsewhere. Setter's thread.
    bool drag(float x1, float y1, float x2, float y2) override;

    /// The detail's camera into the view matrix. Render thread.
    void updateDetailCamera(MatrixState& matrices);
    /// The overview's, which sees the whole dome from far out on its axis. Render thread.
    static void updateOverviewCamera(MatrixState& matrices);

    // Gestures and frames.
    SurfaceSize _size;
    Relaxed<float> _pitch = 0.0f;  // degrees, positive looks down
    Relaxed<float> _yaw = 0.0f;    // degrees, positive looks to the right
    Relaxed<int> _dragSide = 0;    // the last drag ended on the overview: -1, elsewhere: 1

private:
    /// Turns the detail opposite to a drag that ends where the last one did.
    void fling(float velocityX, float velocityY) override;
    bool isOnOverview(float x, float y) const;
    void aimView(float x, float y);
    void moveView(float dPitch, float dYaw);
};

}  // namespace zet::ZETShow
