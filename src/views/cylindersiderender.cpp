// What a person sees: the whole circle of the lens unrolled into a strip, the horizon along its upper edge and what
// lies near the lens axis along its lower one. A wide window shows a half or a third of it at once: a drag or a fling
// moves it sideways without end, across the seam where the circle is cut open. A double tap flies between the strip
// with bars above and below it and the strip that fills the window's height; a pinch goes there by steps.

#include "views/cylindersiderender.h"

namespace zet::ZETShow {

namespace {

// Reads a_texCoord as a place on the strip: the angle around the centre, counted from the cut, and the radius. Adds the
// angle of the cut.
const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform float cut;
varying vec2 v_texCoord;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = vec2(a_texCoord.s + cut, a_texCoord.t);
}
)";

const char* const mainStep = R"(
void main() {
    gl_FragColor = sampleLens(v_texCoord.t * vec2(cos(v_texCoord.s), sin(v_texCoord.s)));
}
)";

constexpr float quarterTurn = 1.5708f;
constexpr float wholeTurn = 6.2832f;
constexpr float rim = 1.0f - 0.00179f;  // of the lens circle's radius
constexpr float inner = rim - 0.8f;

// Triangle-strip order, scene units. The rim is at the top.
constexpr std::array<MeshVertex, 4> strip = {{
    {{-6, -1.15f, 0}, {quarterTurn - wholeTurn, inner}},
    {{6, -1.15f, 0}, {quarterTurn, inner}},
    {{-6, 1.15f, 0}, {quarterTurn - wholeTurn, rim}},
    {{6, 1.15f, 0}, {quarterTurn, rim}},
}};

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 20.0f;

}  // namespace

CylinderSideRender::CylinderSideRender(DisplayConfig* config, RenderThread* thread,
                                       const std::shared_ptr<CylinderSideMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int CylinderSideRender::init(const ColorTransform& color) {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glDisable(GL_DEPTH_TEST);
    _strip.load(strip);
    _program.build(color, vertexStage, {mainStep}, {"cut"});
    return 0;
}

int CylinderSideRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_size.changeTo(surfaceWidth, surfaceHeight)) setFrustumByAspect(_matrix, _size.aspect(), nearPlane, farPlane);
    if (!_size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    setViewport({0, 0, surfaceWidth, surfaceHeight});
    _motion.step();
    if (_program.isBuilt()) draw(frame);
    return 0;
}

void CylinderSideRender::draw(const Frame& frame) {
    matrixIdentity(_matrix._modelMatrix);
    matrixLookAt(_matrix._viewMatrix, 0, 0, _motion._eyeZ, 0, 0, 0, 0, 1, 0);
    _program.use(frame);
    _program.setMatrix(_matrix.computeMvp());
    _program.set(0, _motion._cut);
    _strip.bind();
    _strip.draw();
}

}  // namespace zet::ZETShow
