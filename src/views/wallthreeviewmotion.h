#pragma once

#include "render/matrix.h"
#include "render/motion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The panes of the wall view of three panes and their cameras, which no gesture moves. Render thread.
///
/// Pane 0 is at the top left of the screen, pane 2 at the top right, and pane 1, the panorama, below both.
struct WallThreeViewMotion final : Motion {
    static constexpr int panorama = 1;

    /// Divides the surface of `_size`.
    void layoutPanes();
    /// View and projection of pane 0, then of pane 2, in each frame: pane 2 takes its shift from pane 0.
    void updatePaneCamera(int p, MatrixState& matrices);
    /// The same for the panorama, a flat quad.
    static void updatePanoramaCamera(MatrixState& matrices);

    SurfaceSize _size;
    Viewport _paneRects[3];
    /// Half width of the frustum of the upper panes, a whole number. It is 0 for a pane taller than wide: no picture.
    float _aspect = 0.0f;

    float _yaw[3] = {};       // degrees, positive looks to the right
    float _paneMoveZ = 0.0f;  // shift of the dome; 0 in the first frame, then at its most
};

}  // namespace zet::ZETShow
