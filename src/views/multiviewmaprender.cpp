// What a person sees: two square pictures. On the left, as on a map, the whole round picture, upright and still; on the
// right a close look along the wall of the same dome. The part of the map that the right side shows is lit up. A touch
// or a drag on the map points the right side there, a drag on the right side turns and tilts it by hand. A tilt beyond
// the look along the wall springs back when the finger lifts.

#include "views/multiviewmaprender.h"

#include <string>

#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const mainStep = R"(
void main() {
    vec2 tmpcoord = lensPointOpposite(evenRadius(v_texCoord.t), v_texCoord.s);
    gl_FragColor = lightUp(samplePicture(tmpcoord).rgb);
}
)";

constexpr float frad = 0.998f;  // radius of the lens circle as a part of the half texture
constexpr float aspect = 1.0f;  // panes are square
constexpr float nearPlane = 1.0f;
constexpr float farPlane = 25.0f;

}  // namespace

MultiViewMapRender::MultiViewMapRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int MultiViewMapRender::init() {
    _dome = makeDome(onSphere);
    const int created = createProgram();
    _ready = created == 0;
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int MultiViewMapRender::createProgram() {
    const std::string fragmentStage = std::string("precision highp float;\n") + frameDeclarations + evenRadius +
                                      lensPointOpposite + yuvSampling + detailLight + mainStep;
    _program = buildProgram(detailVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _detailArea.fetchLocations(_program);
    _fradLoc = glGetUniformLocation(_program, "frad");
    return 0;
}

int MultiViewMapRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (!_ready) return -1;
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawPanes(texture);
    return 0;
}

void MultiViewMapRender::layOut() {
    _detailArea.layoutPanes(_motion._size._lastWidth, _motion._size._lastHeight);
    for (MatrixState& matrices : _paneMatrices) setFrustumByAspect(matrices, aspect, nearPlane, farPlane);
}

void MultiViewMapRender::drawPanes(Texture& texture) {
    _motion.step();
    drawPane(DetailArea::detailPane, texture);  // first: the map's light takes its matrix
    drawPane(DetailArea::mapPane, texture);
}

void MultiViewMapRender::drawPane(int pane, Texture& texture) {
    const PaneRect& rect = _detailArea._paneRects[pane];
    MatrixState& matrices = _paneMatrices[pane];
    matrixIdentity(matrices._modelMatrix);
    matrices.pushMatrix();
    glViewport(rect.x, rect.y, rect.width, rect.height);
    _viewport = {rect.x, rect.y, rect.width, rect.height};
    aimCamera(pane, matrices);
    glUseProgram(_program);
    _detailArea.send(pane, nearPlane, farPlane);
    _dome.enable(_positionLoc, _texCoordLoc);
    bindFrameTextures(texture, matrices.computeMvp());
    glUniform1f(_fradLoc, frad);
    _dome.draw(_positionLoc, _texCoordLoc);
    matrices.popMatrix();
}

void MultiViewMapRender::aimCamera(int pane, MatrixState& matrices) {
    if (pane == DetailArea::mapPane) {
        MultiViewMapMotion::updateMapCamera(matrices);
        return;
    }
    _motion.updateDetailCamera(matrices);
    _detailArea.setDetailMatrix(matrices.computeMvp());
}

void MultiViewMapRender::setAutoRotate(bool enable, float speed) {
    _motion.setAutoRotate(enable, speed);
}

int MultiViewMapRender::onTouchDown(float x, float y) {
    _motion.touchDown(x, y);
    return 0;
}

int MultiViewMapRender::onTouchUp(float, float) {
    _motion.touchUp();
    return 0;
}

int MultiViewMapRender::onDoubleTap(float, float) {
    _motion.touchUp();
    return 0;
}

int MultiViewMapRender::onDrag(float x1, float y1, float x2, float y2) {
    _motion.drag(x1, y1, x2, y2);
    return 0;
}

void MultiViewMapRender::onFling(float velocityX, float) {
    _motion.fling(velocityX);
}

}  // namespace zet::ZETShow
