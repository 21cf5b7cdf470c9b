// What a person sees: two square pictures. On the left, as on a map, the whole round picture, upright and still; on the
// right a close look along the wall of the same dome. The part of the map that the right side shows is lit up. A touch
// or a drag on the map points the right side there, a drag on the right side turns and tilts it by hand. A tilt beyond
// the look along the wall springs back when the finger lifts.

#include "views/multiviewmaprender.h"

namespace zet::ZETShow {

namespace {

constexpr float nearPlane = 1.0f;

}  // namespace

MultiViewMapRender::MultiViewMapRender(DisplayConfig* config, RenderThread* thread,
                                       const std::shared_ptr<MultiViewMapMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int MultiViewMapRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return _detailArea.init(_program, color);
}

int MultiViewMapRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) _detailArea.layOut(_motion._size, nearPlane);
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    _motion.step();
    // The detail first: the light on the map needs its matrix.
    setViewport(_detailArea.detailPane());
    _motion.updateDetailCamera(_detailArea._detailMatrices);
    _detailArea.drawDetail(_program, frame);
    setViewport(_detailArea.mapPane());
    MultiViewMapMotion::updateMapCamera(_detailArea._mapMatrices);
    _detailArea.drawMap(frame);
    return 0;
}

}  // namespace zet::ZETShow
