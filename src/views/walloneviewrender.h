#pragma once

#include "render/render.h"
#include "views/parts/walldome.h"
#include "views/parts/wallzoom.h"

namespace zet::ZETShow {

/// The view wall-one: the lens circle of a camera on a wall, on a dome that a camera on its axis sees whole from far
/// and may look about in when near.
class WallOneViewRender final : public Render {
public:
    WallOneViewRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<WallZoom>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    WallZoom& _motion;
    WallDome _dome;
};

}  // namespace zet::ZETShow
