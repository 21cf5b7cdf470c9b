// What a person sees: four pictures in a grid, each what a camera near the middle of the lens sees of one quarter of
// the scene. A drag turns the pane under the finger and tilts it towards what lies straight before the lens. A double
// tap enlarges one pane to the whole surface, another goes back. All panes can turn by themselves; a touch stops the
// one that it falls on.

#include "views/multiviewrender.h"

#include <string>

#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const mainStep = R"(
uniform float fratio;
void main() {
    float ftmp = poleShrink(v_texCoord.t) + fratio;
    vec2 tmpcoord = lensPoint(ftmp * evenRadius(v_texCoord.t), v_texCoord.s);
    gl_FragColor = samplePicture(tmpcoord);
}
)";

constexpr float frad = 0.998f;  // radius of the lens circle as a part of the half texture
constexpr float fratio = 0.0f;  // the pull towards the pole stays as it is
constexpr float aspect = 1.0f;  // of the frusta: it doesn't follow the shape of the panes
constexpr float nearPlane = 1.5f;
constexpr float farPlane = 25.0f;

}  // namespace

MultiViewRender::MultiViewRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int MultiViewRender::init() {
    _dome = makeDome(onSphere);
    const int created = createProgram();
    _ready = created == 0;
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int MultiViewRender::createProgram() {
    const std::string fragmentStage = std::string("precision highp float;\n") + frameDeclarations + evenRadius +
                                      poleShrink + lensPoint + yuvSampling + mainStep;
    _program = buildProgram(frameVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _fradLoc = glGetUniformLocation(_program, "frad");
    _fratioLoc = glGetUniformLocation(_program, "fratio");
    return _fradLoc >= 0 && _fratioLoc >= 0 ? 0 : -1;
}

int MultiViewRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (!_ready) return -1;
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!_motion._size._sized) return -1;
    drawPanes(texture);
    return 0;
}

void MultiViewRender::layOut() {
    _motion.layoutPanes();
    for (MatrixState& matrices : _paneMatrices) setFrustumByAspect(matrices, aspect, nearPlane, farPlane);
}

void MultiViewRender::drawPanes(Texture& texture) {
    if (_motion._zoomed) {
        drawPane(_motion._selectedPane, {0, 0, _motion._size._lastWidth, _motion._size._lastHeight}, texture);
    } else {
        for (int p = 0; p < MultiViewMotion::paneCount; ++p) drawPane(p, _motion._paneRects[p], texture);
    }
}

void MultiViewRender::drawPane(int p, const PaneRect& rect, Texture& texture) {
    MatrixState& matrices = _paneMatrices[p];
    matrixIdentity(matrices._modelMatrix);
    matrices.pushMatrix();
    glViewport(rect.x, rect.y, rect.width, rect.height);
    _viewport = {rect.x, rect.y, rect.width, rect.height};
    _motion.updatePaneCamera(p, matrices);
    glUseProgram(_program);
    _dome.enable(_positionLoc, _texCoordLoc);
    glUniform1f(_fradLoc, frad);
    glUniform1f(_fratioLoc, fratio);
    bindFrameTextures(texture, matrices.computeMvp());
    _dome.draw(_positionLoc, _texCoordLoc);
    matrices.popMatrix();
}

void MultiViewRender::setAutoRotate(bool enable, float speed) {
    _motion.setAutoRotate(enable, speed);
}

int MultiViewRender::onTouchDown(float x, float y) {
    _motion.touchDown(x, y);
    return 0;
}

int MultiViewRender::onTouchUp(float, float) {
    return 0;  // asks for a redraw, no more
}

int MultiViewRender::onDoubleTap(float x, float y) {
    _motion.doubleTap(x, y);
    return 0;
}

int MultiViewRender::onDrag(float x1, float y1, float x2, float y2) {
    _motion.drag(x1, y1, x2, y2);
    return 0;
}

void MultiViewRender::onFling(float velocityX, float) {
    _motion.fling(velocityX);
}

}  // namespace zet::ZETShow
