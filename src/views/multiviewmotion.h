#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The four cameras of the grid and where their panes lie. Gestures and frames change its numbers, `MultiViewRender`
/// draws them. Touch coordinates are surface pixels, origin at the top left corner.
///
/// Pane 0 is at the bottom left of the screen, and the others follow clockwise.
struct MultiViewMotion final : Motion {
    static constexpr int paneCount = 4;

    // Setter's thread.
    /// Stops the pane under the point.
    bool touchDown(float x, float y) override;
    bool touchUp(float, float) override { return true; }  // only asks for a redraw
    /// Enlarges the pane under the point, or goes back to the grid.
    bool doubleTap(float x, float y) override;
    /// Turns and tilts the enlarged pane, otherwise the one under the second point.
    bool drag(float x1, float y1, float x2, float y2) override;
    /// Starts or stops all panes; `speed` is a factor, negative turns the other way.
    void setAutoRotate(bool on, float speed) override;

    /// Divides the surface of `_size`. Render thread.
    void layoutPanes();
    /// Steps pane `p` and writes its camera into the view matrix. Render thread.
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

    // Worked out at each layout. Render thread.
    Viewport _paneRects[paneCount];

private:
    /// Turns the pane that was dragged or enlarged last.
    void fling(float velocityX, float velocityY) override;
    void stepAutoRotate();
};

}  // namespace zet::ZETShow
