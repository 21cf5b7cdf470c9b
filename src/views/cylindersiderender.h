#pragma once

#include "render/matrix.h"
#include "render/mesh.h"
#include "render/render.h"
#include "views/cylindersidemotion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// The panorama: the lens circle unrolled into one flat strip, its rim at the top.
class CylinderSideRender final : public Render {
public:
    CylinderSideRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<CylinderSideMotion>& motion);

    /// Always 0: without a program the view shows the clear colour.
    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    void draw(const Frame& frame);

    CylinderSideMotion& _motion;

    // As of the last projection.
    SurfaceSize _size;
    MatrixState _matrix;

    // Fixed after `init`.
    Mesh _strip;
};

}  // namespace zet::ZETShow
