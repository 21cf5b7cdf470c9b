#pragma once

#include "render/matrix.h"
#include "render/mesh.h"
#include "render/program.h"
#include "render/viewport.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// Two square panes side by side: on the left the whole dome as on a map, and on the right a detail of it. What the
/// detail shows is lit up on the map: each pixel there is sent through the detail's camera too. Render thread.
class DetailArea {
public:
    /// Makes the dome, builds the map's program and, into `plain`, the detail's. 0, or -1 if one doesn't build.
    int init(FrameProgram& plain, const ColorTransform& color);
    /// Two squares in the middle of the surface, as large as a narrow margin allows, and the frusta of both cameras.
    void layOut(const SurfaceSize& surface, float nearPlane);

    /// Draws the dome into the current viewport, as the detail's camera sees it.
    void drawDetail(FrameProgram& plain, const Frame& frame);
    /// The same for the map's, lit up where the detail's looked when it was drawn.
    void drawMap(const Frame& frame);

    const Viewport& detailPane() const { return _detailPane; }
    const Viewport& mapPane() const { return _mapPane; }

    // The cameras: the motion writes their view matrices before each draw.
    MatrixState _detailMatrices;
    MatrixState _mapMatrices;

private:
    Viewport _detailPane;
    Viewport _mapPane;
    Mesh _dome;
    FrameProgram _mapProgram;
};

}  // namespace zet::ZETShow
