// What a person sees: the round picture as the inside of a bowl. From far the whole bowl, nearly as the lens drew it;
// from near the view along its wall, as if one stood in the room; under a finger that tilts further, its rim. A double
// tap flies between far and near and turns what was tapped to the top, drags and pinches do the way by hand, and a
// tilt beyond near springs back. A new view opens with a flight out of the bowl, in which it turns once. Behind it
// stand a halo and stars, which are a part of their own.

#include "views/halfsphererender.h"

#include <string>

#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/parts/lenspieces.h"

namespace zet::ZETShow {

namespace {

// Reads the angles of the pixel and how far the camera is (fratio, 0 at near to 0.5 at far); draws what the picture has
// there. From far to near its radius goes over from a cosine of t to an even fall, where fratio is tm, and then by m3
// to one that falls as the sine. PlatFlag is always 0: tm is 0.25.
const char* const bowlLookup = R"(
uniform float fratio;
uniform float PlatFlag;
void main() {
    float t = v_texCoord.t;
    float ftmp = poleShrink(t);
    float fir1 = frad * ftmp * cos(t);
    float fir2 = evenRadius(t) * ftmp;
    float fir3 = frad * ftmp * (1.0 - sin(t));
    float tm = PlatFlag == 0.0 ? 0.25 : 0.5;
    const float m3 = 0.35;
    float fir;
    if (fratio >= tm) {
        float frat = (fratio - tm) * 2.0;
        fir = frat * fir1 + (1.0 - frat) * fir2;
    } else {
        float frat = fratio * m3 / tm + 1.0 - m3;
        fir = frat * fir2 + (1.0 - frat) * fir3;
    }
    vec2 tmpcoord = lensPointOpposite(fir, v_texCoord.s);
    gl_FragColor = samplePicture(tmpcoord);
}
)";

constexpr float frad = 0.998f;  // radius of the lens circle as a part of the half texture
constexpr float nearPlane = 1.0f;
constexpr float farPlane = 25.0f;

}  // namespace

HalfSphereRender::HalfSphereRender(DisplayConfig* config, float touchScale, Display* display)
    : Render(config, touchScale, display) {}

int HalfSphereRender::init() {
    _dome = makeDome(onFlattenedSphere);
    const int created = createProgram();
    _scene.loadPicture();
    _ready = created == 0;
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glDisable(GL_DEPTH_TEST);
    return created;
}

int HalfSphereRender::createProgram() {
    const std::string fragmentStage = std::string("precision highp float;\n") + frameDeclarations + evenRadius +
                                      poleShrink + lensPointOpposite + yuvSampling + bowlLookup;
    _program = buildProgram(frameVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _fradLoc = glGetUniformLocation(_program, "frad");
    _fratioLoc = glGetUniformLocation(_program, "fratio");
    _platFlagLoc = glGetUniformLocation(_program, "PlatFlag");
    if (_fradLoc < 0 || _fratioLoc < 0 || _platFlagLoc < 0) return -1;
    return _scene.createPrograms();
}

int HalfSphereRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (!_ready) return -1;
    layOut(surfaceWidth, surfaceHeight);
    if (!_surface._sized) return -1;
    glUseProgram(_program);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    _viewport = {0, 0, surfaceWidth, surfaceHeight};
    glViewport(0, 0, surfaceWidth, surfaceHeight);
    if (_motion._showBack) _scene.drawBack(_motion);
    if (_motion._showPoints) _scene.drawPoints(_motion);
    drawBowl(texture);
    if (_motion.isAlive()) requestRender();
    return 0;
}

void HalfSphereRender::layOut(int surfaceWidth, int surfaceHeight) {
    if (!_surface.changeTo(surfaceWidth, surfaceHeight)) return;
    setFrustumByAspect(_sphereMatrix, _surface.aspect(), nearPlane, farPlane);
    _scene.setFrustum(_surface.aspect(), nearPlane, farPlane);
}

void HalfSphereRender::drawBowl(Texture& texture) {
    glUseProgram(_program);
    matrixIdentity(_sphereMatrix._modelMatrix);
    _sphereMatrix.pushMatrix();
    _motion.step();
    lookIntoScene(_sphereMatrix, _motion, _motion._eyeZ);
    _dome.enable(_positionLoc, _texCoordLoc);
    glUniform1f(_platFlagLoc, 0.0f);
    glUniform1f(_fradLoc, frad);
    glUniform1f(_fratioLoc, _motion.fratio());
    bindFrameTextures(texture, _sphereMatrix.computeMvp());
    _dome.draw(_positionLoc, _texCoordLoc);
    _sphereMatrix.popMatrix();
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
