// What a person sees: two square pictures. On the left the whole round picture of a lens on a wall, upright and still;
// on the right what a camera close to it sees of one side. The part of the left that the right shows is lit up. A touch
// on the left turns the camera towards that place, a drag there takes the lit part along; a drag on the right moves the
// view the other way. The further the camera turns, the less it may turn along the other axis.

#include "views/walltwoviewrender.h"

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
constexpr float nearPlane = 1.5f;
constexpr float farPlane = 25.0f;

}  // namespace

WallTwoViewRender::WallTwoViewRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int WallTwoViewRender::init() {
    _dome = makeDome(onSphere);
    const int created = createProgram();
    _ready = created == 0;
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int WallTwoViewRender::createProgram() {
    const std::string fragmentStage = std::string("precision highp float;\n") + frameDeclarations + evenRadius +
                                      lensPointOpposite + yuvSampling + detailLight + mainStep;
    _program = buildProgram(detailVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _fradLoc = glGetUniformLocation(_program, "frad");
    _detailArea.fetchLocations(_program);
    return _fradLoc >= 0 ? 0 : -1;
}

int WallTwoViewRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (!_ready) return -1;
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) layOut();
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawPanes(texture);
    return 0;
}

void WallTwoViewRender::layOut() {
    _detailArea.layoutPanes(_motion._size._lastWidth, _motion._size._lastHeight);
    for (MatrixState& matrices : _paneMatrices) setFrustumByAspect(matrices, aspect, nearPlane, farPlane);
}

void WallTwoViewRender::drawPanes(Texture& texture) {
    drawPane(DetailArea::detailPane, texture);  // first: the overview's light takes its matrix
    drawPane(DetailArea::mapPane, texture);
}

void WallTwoViewRender::drawPane(int pane, Texture& texture) {
    const PaneRect& rect = _detailArea._paneRects[pane];
    MatrixState& matrices = _paneMatrices[pane];
    matrixIdentity(matrices._modelMatrix);
    matrices.pushMatrix();
    updatePaneCamera(pane, matrices);
    glUseProgram(_program);
    glViewport(rect.x, rect.y, rect.width, rect.height);
    _viewport = {rect.x, rect.y, rect.width, rect.height};
    _detailArea.send(pane, nearPlane, farPlane);
    _dome.enable(_positionLoc, _texCoordLoc);
    bindFrameTextures(texture, matrices.computeMvp());
    glUniform1f(_fradLoc, frad);
    _dome.draw(_positionLoc, _texCoordLoc);
    matrices.popMatrix();
}

void WallTwoViewRender::updatePaneCamera(int pane, MatrixState& matrices) {
    if (pane == DetailArea::mapPane) {
        WallTwoViewMotion::updateOverviewCamera(matrices);
        return;
    }
    _motion.updateDetailCamera(matrices);
    _detailArea.setDetailMatrix(matrices.computeMvp());
}

int WallTwoViewRender::onTouchDown(float x, float y) {
    _motion.touchDown(x, y);
    return 0;
}

int WallTwoViewRender::onDrag(float x1, float y1, float x2, float y2) {
    _motion.drag(x1, y1, x2, y2);
    return 0;
}

void WallTwoViewRender::onFling(float velocityX, float velocityY) {
    _motion.fling(velocityX, velocityY);
}

}  // namespace zet::ZETShow
