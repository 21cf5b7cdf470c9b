#pragma once

#include "render/render.h"
#include "views/multiviewmotion.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// The view four-pane: four cameras inside the dome, each with a pane of its own in a grid of two by two.
class MultiViewRender final : public Render {
public:
    MultiViewRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<MultiViewMotion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    void layOut();
    void drawPanes(const Frame& frame);
    void drawPane(int p, const Viewport& rect);

    MultiViewMotion& _motion;

    // Fixed after `init`.
    Mesh _dome;

    MatrixState _paneMatrices[MultiViewMotion::paneCount];
};

}  // namespace zet::ZETShow
