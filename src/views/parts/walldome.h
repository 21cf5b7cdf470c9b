#pragma once

#include <initializer_list>

#include "render/matrix.h"
#include "render/mesh.h"
#include "render/program.h"
#include "views/parts/dome.h"
#include "views/parts/wallzoom.h"

namespace zet::ZETShow {

/// The dome of a one-pane wall view, drawn out or pressed along two of its axes as the camera comes nearer. Render
/// thread.
class WallDome {
public:
    /// Makes the mesh and builds the program. The fragment stage is `pieces`; they may read `v_place`, the place on the
    /// stretched dome. 0, or -1 if it doesn't build.
    int init(FrameProgram& program, const ColorTransform& color, const DomeRule& rule,
             std::initializer_list<const char*> pieces);
    /// Takes the surface's size before a draw; false if there is no layout for it.
    bool fitTo(SurfaceSize& size, int surfaceWidth, int surfaceHeight);
    /// Draws into the current viewport, as `motion` has the camera.
    void draw(FrameProgram& program, const Frame& frame, const WallZoom& motion);

private:
    Mesh _mesh;
    MatrixState _matrices;
};

}  // namespace zet::ZETShow
