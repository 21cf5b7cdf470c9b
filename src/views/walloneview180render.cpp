// What a person sees: from far, the frame as it is, flat and upright in the middle of a black surface, its left and
// right rounded off by an ellipse. As the camera comes nearer, by a double tap or by pinches, the picture bends into a
// dome, and in the end the camera stands inside it and looks about. A lifted finger lets the view creep back towards
// the middle; by itself it can sweep from side to side.

#include "views/walloneview180render.h"

#include <cmath>
#include "render/shaderpieces.h"

namespace zet::ZETShow {

namespace {

const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
uniform float xCoff;
uniform float zCoff;
varying vec2 v_texCoord;
void main() {
    vec3 tmpPosition = a_position.xyz * vec3(xCoff, 1.0, zCoff);
    gl_Position = u_mapMatrix * vec4(tmpPosition, 1.0);
    v_texCoord = a_texCoord;
}
)";

// The ellipse cuts off the frame's left and right edges and its corners.
const char* const mainStep = R"(
void main() {
    bool outside = abs(v_texCoord.t) >= 1.0 || dot(v_texCoord * v_texCoord, vec2(0.25 / 0.079102, 1.0)) > 2.8224;
    gl_FragColor = outside ? vec4(0.0, 0.0, 0.0, 1.0) : sampleLens(v_texCoord);
}
)";

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 30.0f;
constexpr float frameStretch = 1.6f;  // the frame is this much wider than high on the dome

// The frame laid on the dome straight along its axis. The dome is drawn turned by a half circle.
MeshVertex underFlatFrame(double a, double b) {
    const auto r = static_cast<float>(std::cos(b));
    const float stretched = frameStretch * r;
    MeshVertex point = onSphere(a, b);
    point.texCoord[0] = static_cast<float>(r * std::sin(a));
    point.texCoord[1] = static_cast<float>(-stretched * std::cos(a));
    return point;
}

}  // namespace

WallOneView180Render::WallOneView180Render(DisplayConfig* config, RenderThread* thread,
                                           const std::shared_ptr<WallOneView180Motion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int WallOneView180Render::init(const ColorTransform& color) {
    glClearColor(0, 0, 0, 1);
    glDisable(GL_DEPTH_TEST);
    _dome.load(makeDome(underFlatFrame));
    return _program.build(color, vertexStage, {mainStep}, {"xCoff", "zCoff"});
}

int WallOneView180Render::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    SurfaceSize& size = _motion._size;
    if (size.changeTo(surfaceWidth, surfaceHeight)) {
        setFrustumByAspect(_matrixState, size.aspect(), nearPlane, farPlane);
    }
    if (!size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    draw(frame);
    return 0;
}

void WallOneView180Render::draw(const Frame& frame) {
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
