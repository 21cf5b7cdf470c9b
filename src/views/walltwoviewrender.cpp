// What a person sees: two square pictures. On the left the whole round picture of a lens on a wall, upright and still;
// on the right what a camera close to it sees of one side. The part of the left that the right shows is lit up. A touch
// on the left turns the camera towards that place, a drag there takes the lit part along; a drag on the right moves the
// view the other way. The further the camera turns, the less it may turn along the other axis.

#include "views/walltwoviewrender.h"

namespace zet::ZETShow {

namespace {

constexpr float nearPlane = 1.5f;

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
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) _detailArea.layOut(_motion._size, nearPlane);
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    // The detail first: the light on the overview needs its matrix.
    setViewport(_detailArea.detailPane());
    _motion.updateDetailCamera(_detailArea._detailMatrices);
    _detailArea.drawDetail(_program, frame);
    setViewport(_detailArea.mapPane());
    WallTwoViewMotion::updateOverviewCamera(_detailArea._mapMatrices);
    _detailArea.drawMap(frame);
    return 0;
}

}  // namespace zet::ZETShow
