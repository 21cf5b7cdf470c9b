// What a person sees: two square pictures. On the left the whole round picture of a lens on a wall, upright and still;
// on the right what a camera close to it sees of one side. The part of the left that the right shows is lit up. A touch
// on the left turns the camera towards that place, a drag there takes the lit part along; a drag on the right moves the
// view the other way. The further the camera turns, the less it may turn along the other axis.

#include "views/walltwoviewrender.h"

namespace zet::ZETShow {

namespace {

constexpr float aspect = 1.0f;  // panes are square
constexpr float nearPlane = 1.5f;
constexpr float farPlane = 25.0f;

}  // namespace

WallTwoViewRender::WallTwoViewRender(DisplayConfig* config, RenderThread* thread,
                                     const std::shared_ptr<WallTwoViewMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallTwoViewRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return _detailArea.init(_program, color);
}

int WallTwoViewRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    drawPanes(frame);
    return 0;
}

void WallTwoViewRender::layOut() {
    _detailArea.layoutPanes(_motion._size._lastWidth, _motion._size._lastHeight);
    setFrustumByAspect(_detailMatrices, aspect, nearPlane, farPlane);
    setFrustumByAspect(_mapMatrices, aspect, nearPlane, farPlane);
}

void WallTwoViewRender::drawPanes(const Frame& frame) {
    // The detail first: the light on the overview needs its matrix.
    setViewport(_detailArea.detailPane());
    matrixIdentity(_detailMatrices._modelMatrix);
    _motion.updateDetailCamera(_detailMatrices);
    const float* const detailMatrix = _detailMatrices.computeMvp();
    _detailArea.drawDetail(_program, frame, detailMatrix);

    setViewport(_detailArea.mapPane());
    matrixIdentity(_mapMatrices._modelMatrix);
    WallTwoViewMotion::updateOverviewCamera(_mapMatrices);
    _detailArea.drawMap(frame, _mapMatrices.computeMvp(), detailMatrix);
}

}  // namespace zet::ZETShow
