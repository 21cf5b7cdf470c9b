#pragma once

#include "render/render.h"
#include "views/parts/detailarea.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {

/// The view wall-two: the whole picture of a wall-mounted lens as an overview on the left, a camera that turns on the
/// right, and the part that the right shows lit up on the left. Nothing moves by itself here.
class WallTwoViewRender final : public Render {
public:
    WallTwoViewRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<WallTwoViewMotion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    WallTwoViewMotion& _motion;
    DetailArea _detailArea;
};

}  // namespace zet::ZETShow
