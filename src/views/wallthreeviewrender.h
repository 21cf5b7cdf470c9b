#pragma once

#include "render/render.h"
#include "views/parts/dome.h"
#include "views/wallthreeviewmotion.h"

namespace zet::ZETShow {

/// The view wall-three: the left and the right of what a wall-mounted lens sees, and below both a panorama of it. No
/// gestures.
class WallThreeViewRender final : public Render {
public:
    WallThreeViewRender(DisplayConfig* config, RenderThread* thread,
                        const std::shared_ptr<WallThreeViewMotion>& motion);

    int init(const ColorTransform& color) override;
    /// Always 0, also where there is nothing to draw.
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    void drawPanes(const Frame& frame);
    /// Draws into a pane from now on: its matrices, with the model's the identity.
    MatrixState& enterPane(int p);
    void drawDome(int p);
    void drawPanorama(const Frame& frame);

    WallThreeViewMotion& _motion;

    // Fixed after `init`.
    Mesh _dome;
    FrameProgram _panoramaProgram;
    Mesh _panorama;

    MatrixState _paneMatrices[3];
};

}  // namespace zet::ZETShow
