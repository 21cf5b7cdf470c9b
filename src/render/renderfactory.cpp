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
std::shared_ptr<Render> make(const Arguments&... arguments) {
    const auto view = std::make_shared<View>(arguments...);
    return view->init() == 0 ? view : nullptr;
}

}  // namespace

std::shared_ptr<Render> createRender(int mode, DisplayConfig* config, RenderThread* thread) {
    switch (mode) {
        case 0:
            return make<CommonRender>(config, thread, std::make_shared<CommonMotion>());
        case 1:
            return make<HalfSphereRender>(config, thread, std::make_shared<HalfSphereMotion>());
        case 2:
            return make<CylinderSideRender>(config, thread, std::make_shared<CylinderSideMotion>());
        case 3:
            return make<MultiViewRender>(config, thread, std::make_shared<MultiViewMotion>());
        case 4:
            return make<MultiViewMapRender>(config, thread, std::make_shared<MultiViewMapMotion>());
        case 5:
            return make<CylinderSphereRender>(config, thread, std::make_shared<CylinderSphereMotion>(drumPose),
                                              CylinderSphereRender::Variant::drum);
        case 6:
            return make<CylinderSphereRender>(config, thread, std::make_shared<CylinderSphereMotion>(bowlPose),
                                              CylinderSphereRender::Variant::bowl);
        case 7:
            return make<WallThreeViewRender>(config, thread, std::make_shared<WallThreeViewMotion>());
        case 8:
            return make<WallTwoViewRender>(config, thread, std::make_shared<WallTwoViewMotion>());
        case 9:
            return make<WallOneViewRender>(config, thread, std::make_shared<WallZoom>(wallOneZoom));
        case 10:
            return make<WallOneView180Render>(config, thread, std::make_shared<WallOneView180Motion>());
        default:
            return nullptr;
    }
}

}  // namespace zet::ZETShow
