#include "support/probeview.h"

namespace zet::test {

namespace {

std::mutex drawMutex;
ProbeView::Draw probeDraw;

}  // namespace

void useProbes(const ProbeView::Draw& draw) {
    probeDraw = draw;
}

std::unique_lock<std::mutex> holdProbes() {
    return std::unique_lock(drawMutex);
}

}  // namespace zet::test

// The factory zet::ZETShow::createRender, which the linker sends here: -Wl,--wrap=NAME.
extern "C" std::shared_ptr<zet::ZETShow::Render>
__real__ZN3zet7ZETShow12createRenderEiPNS_13DisplayConfigEfPNS0_7DisplayE(int, zet::DisplayConfig*, float,
                                                                          zet::ZETShow::Display*);
extern "C" std::shared_ptr<zet::ZETShow::Render>
__wrap__ZN3zet7ZETShow12createRenderEiPNS_13DisplayConfigEfPNS0_7DisplayE(int mode, zet::DisplayConfig* bus,
                                                                          float touchScale,
                                                                          zet::ZETShow::Display* display) {
    using zet::test::ProbeView;
    if (mode == 0 || !zet::test::probeDraw) {
        return __real__ZN3zet7ZETShow12createRenderEiPNS_13DisplayConfigEfPNS0_7DisplayE(mode, bus, touchScale,
                                                                                         display);
    }
    const auto retire = [](ProbeView* view) {
        view->retire();
        delete view;
    };
    const std::shared_ptr<ProbeView> view(new ProbeView(bus, touchScale, display), retire);
    view->draw = [draw = zet::test::probeDraw](const zet::ZETShow::Texture& texture) {
        const auto held = zet::test::holdProbes();
        draw(texture);
    };
    view->goLive();
    return view;
}
