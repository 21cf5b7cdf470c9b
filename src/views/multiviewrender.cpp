// What a person sees: four pictures in a grid, each what a camera near the middle of the lens sees of one quarter of
// the scene. A drag turns the pane under the finger and tilts it towards what lies straight before the lens. A double
// tap enlarges one pane to the whole surface, another goes back. All panes can turn by themselves; a touch stops the
// one that it falls on.

#include "views/multiviewrender.h"

#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const mainStep = R"(
void main() {
    float radius = poleShrink(v_texCoord.t) * evenRadius(v_texCoord.t);
    gl_FragColor = sampleLens(lensPoint(radius, v_texCoord.s));
}
)";

constexpr float aspect = 1.0f;  // of the frusta: it doesn't follow the shape of the panes
constexpr float nearPlane = 1.5f;
constexpr float farPlane = 25.0f;

}  // namespace

MultiViewRender::MultiViewRender(DisplayConfig* config, RenderThread* thread,
                                 const std::shared_ptr<MultiViewMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int MultiViewRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    _dome.load(makeDome(onSphere));
    return _program.build(color, frameVertexStage, {evenRadius, poleShrink, lensPoint, mainStep});
}

int MultiViewRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    glClear(GL_COLOR_BUFFER_BIT);
    if (!_motion._size._sized) return -1;
    drawPanes(frame);
    return 0;
}

void MultiViewRender::layOut() {
    _motion.layoutPanes();
    for (MatrixState& matrices : _paneMatrices) setFrustumByAspect(matrices, aspect, nearPlane, farPlane);
}

void MultiViewRender::drawPanes(const Frame& frame) {
    _program.use(frame);
    _dome.bind();
    if (_motion._zoomed) {
        drawPane(_motion._selectedPane, {0, 0, _motion._size._lastWidth, _motion._size._lastHeight});
    } else {
        for (int p = 0; p < MultiViewMotion::paneCount; ++p) drawPane(p, _motion._paneRects[p]);
    }
}

void MultiViewRender::drawPane(int p, const Viewport& rect) {
    MatrixState& matrices = _paneMatrices[p];
    matrixIdentity(matrices._modelMatrix);
    setViewport(rect);
    _motion.updatePaneCamera(p, matrices);
    _program.setMatrix(matrices.computeMvp());
    _dome.draw();
}

}  // namespace zet::ZETShow
