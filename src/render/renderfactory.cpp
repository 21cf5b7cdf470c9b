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

// A view that retires before its destructor begins, so that no gesture runs in one that is half gone.
template <typename View>
struct RetiringView {
    template <typename... Arguments>
    explicit RetiringView(Arguments... arguments) : view(arguments...) {}
    ~RetiringView() { view.retire(); }

    View view;
};

template <typename View, typename... Arguments>
std::shared_ptr<Render> make(Arguments... arguments) {
    const auto owner = std::make_shared<RetiringView<View>>(arguments...);
    if (owner->view.init() != 0) return nullptr;
    owner->view.goLive();
    return {owner, &owner->view};
}

}  // namespace

std::shared_ptr<Render> createRender(int mode, DisplayConfig* config, float touchScale, Display* display) {
    switch (mode) {
        case 0:
            return make<CommonRender>(config, touchScale, display);
        case 1:
            return make<HalfSphereRender>(config, touchScale, display);
        case 2:
            return make<CylinderSideRender>(config, touchScale, display);
        case 3:
            return make<MultiViewRender>(config, touchScale, display);
        case 4:
            return make<MultiViewMapRender>(config, touchScale, display);
        case 5:
            return make<CylinderSphereRender>(CylinderSphereRender::Variant::drum, config, touchScale, display);
        case 6:
            return make<CylinderSphereRender>(CylinderSphereRender::Variant::bowl, config, touchScale, display);
        case 7:
            return make<WallThreeViewRender>(config, touchScale, display);
        case 8:
            return make<WallTwoViewRender>(config, touchScale, display);
        case 9:
            return make<WallOneViewRender>(config, touchScale, display);
        case 10:
            return make<WallOneView180Render>(config, touchScale, display);
        default:
            return nullptr;
    }
}

}  // namespace zet::ZETShow
