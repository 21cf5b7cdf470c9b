#pragma once

#include "render/mesh.h"
#include "render/program.h"
#include "render/viewport.h"

namespace zet::ZETShow {

/// Two square panes side by side: on the left the whole dome as on a map, and on the right a detail of it. What the
/// detail shows is lit up on the map: each pixel there is sent through the detail's camera too. Render thread.
class DetailArea {
public:
    /// Makes the dome, builds the map's program and, into `plain`, the detail's. 0, or -1 if one doesn't build.
    int init(FrameProgram& plain, const ColorTransform& color);
    /// Two squares in the middle of the surface, as large as a narrow margin allows.
    void layoutPanes(int width, int height);

    /// Draws the dome into the viewport in force, for the detail's combined matrix.
    void drawDetail(FrameProgram& plain, const Frame& frame, const float* detailMatrix) const;
    /// The same for the map's, lit up where the detail's looks.
    void drawMap(const Frame& frame, const float* mapMatrix, const float* detailMatrix);

    const Viewport& detailPane() const { return _detailPane; }
    const Viewport& mapPane() const { return _mapPane; }

private:
    Viewport _detailPane;
    Viewport _mapPane;
    Mesh _dome;
    FrameProgram _mapProgram;
};

}  // namespace zet::ZETShow
