#pragma once

#include "render/matrix.h"
#include "render/render.h"
#include "views/cylinderspheremotion.h"
#include "views/parts/camera.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// The drum and the bowl: the lens circle on a solid shape in the dark. The one view with a depth test,
/// which its `init` switches on and every other view's `init` switches off.
class CylinderSphereRender final : public Render {
public:
    enum class Variant { drum, bowl };
    CylinderSphereRender(DisplayConfig* config, RenderThread* thread,
                         const std::shared_ptr<CylinderSphereMotion>& motion, Variant variant);

    int init(const ColorTransform& color) override;
    /// 0 also where the surface is too small to draw on.
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    void draw(const Frame& frame);
    void placeCamera();

    // Fixed after `init`.
    const Variant _variant;
    Mesh _mesh;

    CylinderSphereMotion& _motion;

    // As of the last projection.
    SurfaceSize _size;
    MatrixState _matrix;
};

}  // namespace zet::ZETShow
