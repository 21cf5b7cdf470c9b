#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The two cameras of the wall view of two panes. Only the detail's moves, and only by gestures. Gestures change the
/// numbers, `WallTwoViewRender` draws them. Touch coordinates are surface pixels, origin at the top left corner. The
/// left half of the surface counts as the overview.
struct WallTwoViewMotion final : Motion {
    /// Turns the detail part of the way to a place of the overview. Setter's thread.
    bool touchDown(float x, float y) override;
    /// Turns the detail: with the finger where the drag ends on the overview, against it elsewhere. Setter's thread.
    bool drag(float x1, float y1, float x2, float y2) override;

    /// Writes the detail's camera into the view matrix. Render thread.
    void updateDetailCamera(MatrixState& matrices);
    /// The same for the overview's, which sees the whole dome from far out on its axis. Render thread.
    static void updateOverviewCamera(MatrixState& matrices);

    // Gestures and frames.
    SurfaceSize _size;
    Relaxed<float> _pitch = 0.0f;  // degrees, positive looks down
    Relaxed<float> _yaw = 0.0f;    // degrees, positive looks to the right
    Relaxed<int> _dragSide = 0;    // where the last drag ended: -1 on the overview, 1 elsewhere

private:
    /// Turns the detail the opposite way to a drag that ends on the side of the last one.
    void fling(float velocityX, float velocityY) override;
    bool isOnOverview(float x, float y) const;
    void aimView(float x, float y);
    void moveView(float dPitch, float dYaw);
};

}  // namespace zet::ZETShow
