// What a person sees: the round picture as the inside of a bowl. From far the whole bowl, nearly as the lens drew it;
// from near the view along its wall, as from inside the room; under a finger that tilts further, its rim. A double
// tap flies between far and near and turns what was tapped to the top, drags and pinches do the way by hand, and a
// tilt beyond near springs back. A new view opens with a flight out of the bowl, in which it turns once. Behind it
// are a halo and stars: see halfspherescene.

#include "views/halfsphererender.h"

#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// The picture's radius by the angle t from the rim. When the camera is far it is cos t, the orthographic projection. On
// the way near it becomes the even fall, which is the equidistant one, and then in part 1 - sin t. `share` is the
// weight of the projection that counts further out.
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

HalfSphereRender::HalfSphereRender(DisplayConfig* config, RenderThread* thread,
                                   const std::shared_ptr<HalfSphereMotion>& motion)
    : Render(config, thread, motion), _motion(*motion) {}

int HalfSphereRender::init(const ColorTransform& color) {
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glDisable(GL_DEPTH_TEST);
    _dome.load(makeDome(onFlattenedSphere));
    _scene.loadPicture();
    const auto build = [&color](FrameProgram& program, const char* mainStep) {
        return program.build(color, frameVertexStage, {evenRadius, poleShrink, lensPointOpposite, mainStep}, {"share"});
    };
    if (build(_program, farBowl) != 0 || build(_nearProgram, nearBowl) != 0) return -1;
    return _scene.createPrograms();
}

int HalfSphereRender::render(int surfaceWidth, int surfaceHeight, const Frame& frame) {
    layOut(surfaceWidth, surfaceHeight);
    if (!_motion._size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT);
    setViewport({0, 0, surfaceWidth, surfaceHeight});
    if (_motion._showBack) _scene.drawBack(_motion);
    if (_motion._showPoints) _scene.drawPoints(_motion);
    drawBowl(frame);
    return 0;
}

void HalfSphereRender::layOut(int surfaceWidth, int surfaceHeight) {
    if (!_motion._size.changeTo(surfaceWidth, surfaceHeight)) return;
    setFrustumByAspect(_sphereMatrix, _motion._size.aspect(), nearPlane, farPlane);
    _scene.setFrustum(_motion._size.aspect(), nearPlane, farPlane);
}

void HalfSphereRender::drawBowl(const Frame& frame) {
    matrixIdentity(_sphereMatrix._modelMatrix);
    _motion.step();
    lookIntoScene(_sphereMatrix, _motion, _motion._eyeZ);
    const float distance = _motion.remoteness();
    const bool isFar = distance >= evenDistance;
    FrameProgram& program = isFar ? _program : _nearProgram;
    program.use(frame);
    program.setMatrix(_sphereMatrix.computeMvp());
    program.set(0, isFar ? (distance - evenDistance) * 2.0f : distance * sineShare / evenDistance + 1.0f - sineShare);
    _dome.bind();
    _dome.draw();
}

}  // namespace zet::ZETShow
