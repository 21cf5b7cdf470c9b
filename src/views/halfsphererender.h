#pragma once

#include "render/matrix.h"
#include "render/render.h"
#include "views/halfspheremotion.h"
#include "views/halfspherescene.h"
#include "views/parts/camera.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// The half sphere: the fisheye picture as the inside of a bowl that floats in a dark scene.
class HalfSphereRender final : public Render {
public:
    HalfSphereRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<HalfSphereMotion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    void layOut(int surfaceWidth, int surfaceHeight);
    void drawBowl(const Frame& frame);

    // Fixed after `init`.
    Mesh _dome;
    FrameProgram _nearProgram;

    HalfSphereMotion& _motion;
    MatrixState _sphereMatrix;
    HalfSphereScene _scene;
};

}  // namespace zet::ZETShow
