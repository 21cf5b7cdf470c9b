// What a person sees: the round picture of a camera on a wall, upright in the middle of a black surface, as high as the
// surface, its top and bottom cut off by two straight edges. A double tap flies in until the picture fills the surface,
// and another flies back; a pinch does it by hand. Near, a drag looks about, and the view can sweep from side to side.
// The dome that carries the picture is deep when seen from far and flat when near.

#include "views/walloneviewrender.h"

#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform float xCoff;
uniform float zCoff;
varying vec2 v_texCoord;
varying vec2 depthAndHeight;
void main() {
    vec3 tmpPosition = vec3(a_position.x * xCoff, a_position.y, a_position.z * zCoff);
    gl_Position = u_mapMatrix * vec4(tmpPosition, 1.0);
    v_texCoord = a_texCoord;
    depthAndHeight = vec2(0.8 * tmpPosition.z, tmpPosition.y);
}
)";

// Two planes that slope towards the pole cut off the dome's top and bottom.
const char* const mainStep = R"(
varying vec2 depthAndHeight;
void main() {
    bool cut = depthAndHeight.x + abs(depthAndHeight.y) > 4.8;
    vec4 color = sampleLens(lensPoint(evenRadius(v_texCoord.t), v_texCoord.s));
    gl_FragColor = cut ? vec4(0.0, 0.0, 0.0, 1.0) : color;
}
)";

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 30.0f;

}  // namespace

WallOneViewRender::WallOneViewRender(DisplayConfig* config, RenderThread* thread,
                                     const std::shared_ptr<WallZoom>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallOneViewRender::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    _dome.load(makeDome(onSphere));
    return _program.build(color, vertexStage, {evenRadius, lensPoint, mainStep}, {"xCoff", "zCoff"});
}

int WallOneViewRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    SurfaceSize& size = _motion._size;
    if (size.changeTo(surfaceWidth, surfaceHeight)) {
        setFrustumByAspect(_matrixState, size.aspect(), nearPlane, farPlane);
    }
    if (!size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    draw(frame);
    return 0;
}

void WallOneViewRender::draw(const Frame& frame) {
    _motion.step();
    setViewport({0, 0, _motion._size._lastWidth, _motion._size._lastHeight});
    matrixIdentity(_matrixState._modelMatrix);
    _motion.updateCamera(_matrixState);
    _program.use(frame);
    _program.setMatrix(_matrixState.computeMvp());
    _program.set(0, _motion._coff.x);
    _program.set(1, _motion._coff.z);
    _dome.bind();
    _dome.draw();
}

}  // namespace zet::ZETShow
