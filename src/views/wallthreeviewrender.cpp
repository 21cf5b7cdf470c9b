// What a person sees: three still pictures of what a lens on a wall sees. At the top left what a camera that is turned
// to the left sees, at the top right the same to the right, and below both, over the whole width, a panorama: across
// it 162 degrees from left to right, up it 98, and what is upright in the scene is upright in it.

#include "views/wallthreeviewrender.h"

#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const domeStep = R"(
void main() {
    gl_FragColor = sampleLens(lensPointOpposite(evenRadius(v_texCoord.t), v_texCoord.s));
}
)";

// The equirectangular projection of a half sphere. v_texCoord is the latitude from the top and the longitude from the
// right, radians; z is the lens axis. The lens is equidistant, and its circle touches the edges of the picture.
const char* const panoramaStep = R"(
void main() {
    vec2 s = sin(v_texCoord);
    vec2 c = cos(v_texCoord);
    vec2 across = vec2(s.s * c.t, -c.s);
    float fromAxis = acos(min(s.s * s.t, 1.0)) / 1.5707963;
    gl_FragColor = sampleLens(fromAxis * inversesqrt(max(dot(across, across), 1e-12)) * across);
}
)";

constexpr float halfTurn = 3.1415927f;

// A triangle strip. It lies in the near plane, and its long side, along which s grows, is upright on the screen.
constexpr std::array<MeshVertex, 4> quad = {{
    {{-1.65f, -1, 0}, {0, halfTurn}},
    {{1.65f, -1, 0}, {halfTurn, halfTurn}},
    {{-1.65f, 1, 0}, {0, 0}},
    {{1.65f, 1, 0}, {halfTurn, 0}},
}};

}  // namespace

WallThreeViewRender::WallThreeViewRender(DisplayConfig* config, RenderThread* thread,
                                         const std::shared_ptr<WallThreeViewMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallThreeViewRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    _dome.load(makeDome(onFlattenedSphere));
    _panorama.load(quad);
    if (_program.build(color, frameVertexStage, {evenRadius, lensPointOpposite, domeStep}) != 0) return -1;
    return _panoramaProgram.build(color, frameVertexStage, {panoramaStep});
}

int WallThreeViewRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_motion._size.changeTo(surfaceWidth, surfaceHeight)) _motion.layoutPanes();
    if (!_motion._size._sized) return 0;
    glClear(GL_COLOR_BUFFER_BIT);
    drawPanes(frame);
    return 0;
}

void WallThreeViewRender::drawPanes(const Frame& frame) {
    drawPanorama(frame);
    _program.use(frame);
    _dome.bind();
    drawDome(0);
    drawDome(2);
}

MatrixState& WallThreeViewRender::enterPane(int p) {
    setViewport(_motion._paneRects[p]);
    matrixIdentity(_paneMatrices[p]._modelMatrix);
    return _paneMatrices[p];
}

void WallThreeViewRender::drawDome(int p) {
    MatrixState& matrices = enterPane(p);
    if (_motion._aspect <= 0.0f) return;  // a pane taller than wide stays empty
    _motion.updatePaneCamera(p, matrices);
    _program.setMatrix(matrices.computeMvp());
    _dome.draw();
}

void WallThreeViewRender::drawPanorama(const Frame& frame) {
    MatrixState& matrices = enterPane(WallThreeViewMotion::panorama);
    WallThreeViewMotion::updatePanoramaCamera(matrices);
    _panoramaProgram.use(frame);
    _panoramaProgram.setMatrix(matrices.computeMvp());
    _panorama.bind();
    _panorama.draw();
}

}  // namespace zet::ZETShow
