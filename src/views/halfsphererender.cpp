// What a person sees: the round picture as the inside of a bowl. From far the whole bowl, nearly as the lens drew it;
// from near the view along its wall, as if one stood in the room; under a finger that tilts further, its rim. A double
// tap flies between far and near and turns what was tapped to the top, drags and pinches do the way by hand, and a
// tilt beyond near springs back. A new view opens with a flight out of the bowl, in which it turns once. Behind it
// stand a halo and stars, which are a part of their own.

#include "views/halfsphererender.h"

#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// The picture's radius goes over from a cosine of t, when the camera is far, to an even fall, and from that in part to
// one that falls as the sine, when it is near. `share` is that of the former of the two.
const char* const farBowl = R"(
uniform float share;
void main() {
    float t = v_texCoord.t;
    float radius = poleShrink(t) * mix(evenRadius(t), lensRadius * cos(t), share);
    gl_FragColor = sampleLens(lensPointOpposite(radius, v_texCoord.s));
}
)";

const char* const nearBowl = R"(
uniform float share;
void main() {
    float t = v_texCoord.t;
    float radius = poleShrink(t) * mix(lensRadius * (1.0 - sin(t)), evenRadius(t), share);
    gl_FragColor = sampleLens(lensPointOpposite(radius, v_texCoord.s));
}
)";

constexpr float evenDistance = 0.25f;  // where the fall is even, between 0, near, and 0.5, far
constexpr float sineShare = 0.35f;     // of the sine, when near

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 25.0f;

}  // namespace

HalfSphereRender::HalfSphereRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int HalfSphereRender::init() {
    _dome.load(makeDome(onFlattenedSphere));
    const int created = createProgram();
    _scene.loadPicture();
    _ready = created == 0;
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int HalfSphereRender::createProgram() {
    const auto build = [](FrameProgram& program, const char* mainStep) {
        return program.build(frameVertexStage, {evenRadius, poleShrink, lensPointOpposite, mainStep}, {"share"});
    };
    if (build(_program, farBowl) != 0 || build(_nearProgram, nearBowl) != 0) return -1;
    return _scene.createPrograms();
}

int HalfSphereRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    if (!_ready) return -1;
    layOut(surfaceWidth, surfaceHeight);
    if (!_surface._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    setViewport({0, 0, surfaceWidth, surfaceHeight});
    if (_motion._showBack) _scene.drawBack(_motion);
    if (_motion._showPoints) _scene.drawPoints(_motion);
    drawBowl(frame);
    if (_motion.isAlive()) requestRender();
    return 0;
}

void HalfSphereRender::layOut(int surfaceWidth, int surfaceHeight) {
    if (!_surface.changeTo(surfaceWidth, surfaceHeight)) return;
    setFrustumByAspect(_sphereMatrix, _surface.aspect(), nearPlane, farPlane);
    _scene.setFrustum(_surface.aspect(), nearPlane, farPlane);
}

void HalfSphereRender::drawBowl(const Frame& frame) {
    matrixIdentity(_sphereMatrix._modelMatrix);
    _motion.step();
    lookIntoScene(_sphereMatrix, _motion, _motion._eyeZ);
    const float distance = _motion.fratio();
    const bool isFar = distance >= evenDistance;
    FrameProgram& program = isFar ? _program : _nearProgram;
    program.use(frame);
    program.setMatrix(_sphereMatrix.computeMvp());
    program.set(0, isFar ? (distance - evenDistance) * 2.0f : distance * sineShare / evenDistance + 1.0f - sineShare);
    _dome.bind();
    _dome.draw();
}

int HalfSphereRender::onTouchDown(float, float) {
    _motion.touchDown();
    return 0;
}

int HalfSphereRender::onTouchUp(float, float) {
    _motion.touchUp();
    return 0;
}

int HalfSphereRender::onPinch(float factor) {
    _motion.pinch(factor);
    return 0;
}

int HalfSphereRender::onDoubleTap(float x, float y) {
    _motion.doubleTap(x, y, _surface._lastWidth, _surface._lastHeight);
    return 0;
}

int HalfSphereRender::onDrag(float x1, float y1, float x2, float y2) {
    _motion.drag(x1, y1, x2, y2);
    return 0;
}

void HalfSphereRender::setAutoRotate(bool enable, float speed) {
    _motion.setAutoRotate(enable, speed);
}

void HalfSphereRender::onFling(float velocityX, float) {
    _motion.fling(velocityX);
}

void HalfSphereRender::setOpeningFlight(bool on) {
    _motion.setOpeningFlight(on);
}

void HalfSphereRender::setSceneBackdrop(bool backdrop, bool stars) {
    _motion.setSceneBackdrop(backdrop, stars);
}

}  // namespace zet::ZETShow
