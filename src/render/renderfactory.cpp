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
    switch (mode) {
        case 0:
            return make<CommonRender>(color, config, thread, std::make_shared<CommonMotion>());
        case 1:
            return make<HalfSphereRender>(color, config, thread, std::make_shared<HalfSphereMotion>());
        case 2:
            return make<CylinderSideRender>(color, config, thread, std::make_shared<CylinderSideMotion>());
        case 3:
            return make<MultiViewRender>(color, config, thread, std::make_shared<MultiViewMotion>());
        case 4:
            return make<MultiViewMapRender>(color, config, thread, std::make_shared<MultiViewMapMotion>());
        case 5:
            return make<CylinderSphereRender>(color, config, thread, std::make_shared<CylinderSphereMotion>(drumPose),
                                              CylinderSphereRender::Variant::drum);
        case 6:
            return make<CylinderSphereRender>(color, config, thread, std::make_shared<CylinderSphereMotion>(bowlPose),
                                              CylinderSphereRender::Variant::bowl);
        case 7:
            return make<WallThreeViewRender>(color, config, thread, std::make_shared<WallThreeViewMotion>());
        case 8:
            return make<WallTwoViewRender>(color, config, thread, std::make_shared<WallTwoViewMotion>());
        case 9:
            return make<WallOneViewRender>(color, config, thread, std::make_shared<WallZoom>(wallOneZoom));
        case 10:
            return make<WallOneView180Render>(color, config, thread, std::make_shared<WallOneView180Motion>());
        default:
            return nullptr;
    }
}

}  // namespace zet::ZETShow
