// What a person sees: two square pictures. On the left, as on a map, the whole round picture, upright and still; on the
// right a close look along the wall of the same dome. The part of the map that the right side shows is lit up. A touch
// or a drag on the map points the right side there, a drag on the right side turns and tilts it by hand. A tilt beyond
// the look along the wall springs back when the finger lifts.

#include "views/multiviewmaprender.h"

namespace zet::ZETShow {

namespace {

constexpr float aspect = 1.0f;  // panes are square
constexpr float nearPlane = 1.0f;
constexpr float farPlane = 25.0f;

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
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    drawPanes(frame);
    return 0;
}

void MultiViewMapRender::layOut() {
    _detailArea.layoutPanes(_motion._size._lastWidth, _motion._size._lastHeight);
    setFrustumByAspect(_detailMatrices, aspect, nearPlane, farPlane);
    setFrustumByAspect(_mapMatrices, aspect, nearPlane, farPlane);
}

void MultiViewMapRender::drawPanes(const Frame& frame) {
    _motion.step();
    // The detail first: the light on the map needs its matrix.
    setViewport(_detailArea.detailPane());
    matrixIdentity(_detailMatrices._modelMatrix);
    _motion.updateDetailCamera(_detailMatrices);
    const float* const detailMatrix = _detailMatrices.computeMvp();
    _detailArea.drawDetail(_program, frame, detailMatrix);

    setViewport(_detailArea.mapPane());
    matrixIdentity(_mapMatrices._modelMatrix);
    MultiViewMapMotion::updateMapCamera(_mapMatrices);
    _detailArea.drawMap(frame, _mapMatrices.computeMvp(), detailMatrix);
}

}  // namespace zet::ZETShow
