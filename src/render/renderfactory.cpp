#include "render/renderfactory.h"

#include "views/commonrender.h"
#include "views/cylindersiderender.h"
#include "views/cylindersphererender.h"
#include "views/halfsphererender.h"
#include "views/multiviewmaprender.h"
#include "views/multiviewrender.h"
#include "views/walloneview180render.h"
#include "views/walloneviewrender.h"
#include "views/wallthreeviewrender.h"
#include "views/walltwoviewrender.h"
#include "zet/rendermode.h"

namespace zet::ZETShow {

namespace {

// Each view's drawing is given its motion, which the bus reaches from then on.
template <typename View, typename... Arguments>
std::shared_ptr<Render> make(const ColorTransform& color, const Arguments&... arguments) {
    const auto view = std::make_shared<View>(arguments...);
    return view->init(color) == 0 ? view : nullptr;
}

}  // namespace

std::shared_ptr<Render> createRender(int mode, const ColorTransform& color, DisplayConfig* config,
                                     RenderThread* thread) {
    switch (static_cast<RenderMode>(mode)) {  // no default: the compiler names a mode that is left out
        case RENDER_MODE_FLAT:
            return make<CommonRender>(color, config, thread, std::make_shared<CommonMotion>());
        case RENDER_MODE_HALF_SPHERE:
            return make<HalfSphereRender>(color, config, thread, std::make_shared<HalfSphereMotion>());
        case RENDER_MODE_PANORAMA:
            return make<CylinderSideRender>(color, config, thread, std::make_shared<CylinderSideMotion>());
        case RENDER_MODE_FOUR_PANE:
            return make<MultiViewRender>(color, config, thread, std::make_shared<MultiViewMotion>());
        case RENDER_MODE_MAP:
            return make<MultiViewMapRender>(color, config, thread, std::make_shared<MultiViewMapMotion>());
        case RENDER_MODE_DRUM:
            return make<CylinderSphereRender>(color, config, thread, std::make_shared<CylinderSphereMotion>(drumPose),
                                              CylinderSphereRender::Variant::drum);
        case RENDER_MODE_BOWL:
            return make<CylinderSphereRender>(color, config, thread, std::make_shared<CylinderSphereMotion>(bowlPose),
                                              CylinderSphereRender::Variant::bowl);
        case RENDER_MODE_WALL_THREE:
            return make<WallThreeViewRender>(color, config, thread, std::make_shared<WallThreeViewMotion>());
        case RENDER_MODE_WALL_TWO:
            return make<WallTwoViewRender>(color, config, thread, std::make_shared<WallTwoViewMotion>());
        case RENDER_MODE_WALL_ONE:
            return make<WallOneViewRender>(color, config, thread, std::make_shared<WallZoom>(wallOneZoom));
        case RENDER_MODE_WALL_180:
            return make<WallOneView180Render>(color, config, thread, std::make_shared<WallOneView180Motion>());
    }
    return nullptr;
}

}  // namespace zet::ZETShow
