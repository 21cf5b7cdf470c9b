#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The four cameras of the grid and where their panes stand. Gestures and frames change its numbers, `MultiViewRender`
/// draws them. Touch coordinates are surface pixels, origin at the top left corner.
///
/// Pane 0 is at the bottom left of the screen, and the others follow clockwise.
struct MultiViewMotion {
    static constexpr int paneCount = 4;

    /// Stops the pane under the point. Setter's thread.
    void touchDown(float x, float y);
    /// Enlarges the pane under the point, or goes back to the grid. Setter's thread.
    void doubleTap(float x, float y);
    /// Turns and tilts the enlarged pane, otherwise the one under the second point. Setter's thread.
    void drag(float x1, float y1, float x2, float y2);
    /// Starts or stops all panes; `speed` is a factor, negative turns the other way. Setter's thread.
    void setAutoRotate(bool on, float speed);

    /// One frame of inertia, surface pixels a second: turns the pane that was dragged or enlarged last. Render thread.
    void fling(float velocityX);
    /// Divides the surface of `_size`. Render thread.
    void layoutPanes();
    /// One step of pane `p`, and its camera into the view matrix. Render thread.
    void updatePaneCamera(int p, MatrixState& matrices);

    /// The pane of the grid at a point, -1 if none. Any thread.
    int paneAt(float x, float y) const;

    // Gestures and frames.
    SurfaceSize _size;
    Relaxed<float> _pan[paneCount] = {};   // turn about the dome's axis, degrees
    Relaxed<float> _tilt[paneCount] = {};  // tens of degrees from the rest tilt towards the pole
    Relaxed<bool> _paneAutoRotate[paneCount] = {};
    Relaxed<bool> _autoRotate = false;  // whether the flags above count
    Relaxed<float> _autoRotateSpeed = 1.0f;
    Relaxed<int> _selectedPane = 0;
    Relaxed<int> _activePane = 0;  // the one that a fling turns
    Relaxed<bool> _zoomed = false;

    // Worked out at each layout and each frame. Render thread.
    Viewport _paneRects[paneCount];
    float _paneElevation[paneCount] = {};  // degrees, 0 looks at the pole
    float _paneMoveY[paneCount] = {};
    float _paneMoveZ[paneCount] = {};

private:
    void updatePaneTilt(int p);
    void stepAutoRotate();
};

}  // namespace zet::ZETShow
