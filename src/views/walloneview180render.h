#pragma once

#include "render/render.h"
#include "views/parts/walldome.h"
#include "views/walloneview180motion.h"

namespace zet::ZETShow {

/// The view wall-180: the frame of a camera on a wall, flat from far and bent into a dome around the camera when near.
/// It takes the lens region as it is, not squared.
class WallOneView180Render final : public Render {
public:
    WallOneView180Render(DisplayConfig* config, RenderThread* thread,
                         const std::shared_ptr<WallOneView180Motion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    WallOneView180Motion& _motion;
    WallDome _dome;
};

}  // namespace zet::ZETShow
