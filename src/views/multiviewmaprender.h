#pragma once

#include "render/render.h"
#include "views/multiviewmapmotion.h"
#include "views/parts/detailarea.h"

namespace zet::ZETShow {

/// The map: the whole dome as a map on the left, a look along its wall on the right, and the part that the right shows
/// lit up on the left.
class MultiViewMapRender final : public Render {
public:
    MultiViewMapRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<MultiViewMapMotion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    MultiViewMapMotion& _motion;
    DetailArea _detailArea;
};

}  // namespace zet::ZETShow
