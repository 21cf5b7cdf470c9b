// What a person sees: the whole circle of the lens unrolled into a strip, the horizon along its upper edge and what
// lies near the lens axis along its lower one. A wide window shows a half or a third of it at once: a drag or a fling
// moves it sideways without end, across the seam where the circle is cut open. A double tap flies between the strip
// with bars above and below it and the strip that fills the window's height; a pinch goes there by steps.

#include "views/cylindersiderender.h"

#include "render/shaderpieces.h"

namespace zet::ZETShow {

namespace {

// Reads v_texCoord as a place on the strip, s along it and t from its top; leaves the place in the picture by the polar
// transform: s is the angle around the centre, counted from the cut, t the way from the rim inward.
const char* const stripLookup = R"(
uniform float cut;
vec2 stripPoint() {
    vec2 place = vec2(1.0 - v_texCoord.s, 0.00179 + v_texCoord.t * 0.8);
    float angle = 1.5708 - 6.2832 * place.s + cut;
    float radius = 0.5 - place.t / 2.0;
    return vec2(radius * cos(angle) + 0.5, radius * sin(angle) + 0.5);
}
)";

const char* const mainStep = R"(
void main() {
    gl_FragColor = samplePicture(stripPoint());
}
)";

// Triangle-strip order, scene units.
constexpr std::array<MeshVertex, 4> strip = {{
    {{-6, -1.15f, 0}, {0, 1}},
    {{6, -1.15f, 0}, {1, 1}},
    {{-6, 1.15f, 0}, {0, 0}},
    {{6, 1.15f, 0}, {1, 0}},
}};

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 20.0f;

}  // namespace

CylinderSideRender::CylinderSideRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int CylinderSideRender::init() {
    createProgram();
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glDisable(GL_DEPTH_TEST);
    return 0;
}

int CylinderSideRender::createProgram() {
    if (_program.build(frameVertexStage, {stripLookup, mainStep}) != 0) return -1;
    _cutLoc = _program.uniform("cut");
    _strip.load(strip);
    return 0;
}

int CylinderSideRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (_size.changeTo(surfaceWidth, surfaceHeight)) setFrustumByAspect(_matrix, _size.aspect(), nearPlane, farPlane);
    if (!_size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    setViewport({0, 0, surfaceWidth, surfaceHeight});
    _motion.step();
    if (_program.name != 0) draw(frame);
    return 0;
}

void CylinderSideRender::draw(const Frame& frame) {
    matrixIdentity(_matrix._modelMatrix);
    matrixLookAt(_matrix._viewMatrix, 0, 0, _motion._eyeZ, 0, 0, 0, 0, 1, 0);
    _program.use(frame);
    _program.setMatrix(_matrix.computeMvp());
    glUniform1f(_cutLoc, _motion._ptZm);
    _strip.bind();
    _strip.draw();
}

int CylinderSideRender::onTouchDown(float, float) {
    _motion.touch();
    return 0;
}

int CylinderSideRender::onPinch(float factor) {
    _motion.pinch(factor);
    return 0;
}

int CylinderSideRender::onDoubleTap(float, float) {
    _motion.doubleTap();
    return 0;
}

int CylinderSideRender::onDrag(float x1, float, float x2, float) {
    _motion.drag(x1, x2);
    return 0;
}

void CylinderSideRender::setAutoRotate(bool enable, float speed) {
    _motion.setAutoRotate(enable, speed);
}

void CylinderSideRender::onFling(float velocityX, float) {
    _motion.fling(velocityX);
}

}  // namespace zet::ZETShow
