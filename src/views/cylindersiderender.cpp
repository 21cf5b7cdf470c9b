// What a person sees: the whole circle of the lens unrolled into a strip, the horizon along its upper edge and what
// lies near the lens axis along its lower one. A wide window shows a half or a third of it at once: a drag or a fling
// moves it sideways without end, across the seam where the circle is cut open. A double tap flies between the strip
// with bars above and below it and the strip that fills the window's height; a pinch goes there by steps.

#include "views/cylindersiderender.h"

#include <string>

#include "render/program.h"
#include "render/shaderpieces.h"

namespace zet::ZETShow {

namespace {

// Reads v_texCoord as a place on the strip, s along it and t from its top; leaves the place in the picture by the polar
// transform: s is the angle around the centre, counted from the cut, t the way from the rim inward.
const char* const stripLookup = R"(
uniform float fPt_Zm;
uniform float fPt_L;
uniform float fPt_R;
uniform float fPt_T;
uniform float fPt_B;
vec2 stripPoint() {
    vec2 oripts = vec2(1.0 - v_texCoord.s, 0.00179 + v_texCoord.t * 0.8);
    float thetaangle = 1.5708 - 6.2832 * oripts.s + fPt_Zm;
    float dr = 0.5 - oripts.t / 2.0;
    return vec2(fPt_L + (fPt_R - fPt_L) * (dr * cos(thetaangle) + 0.5),
                fPt_T + (fPt_B - fPt_T) * (dr * sin(thetaangle) + 0.5));
}
)";

const char* const mainStep = R"(
void main() {
    vec2 respts = stripPoint();
    vec4 rgba = samplePicture(respts);
    if (respts.s > 1.0 || respts.s < 0.0 || respts.t > 1.0 || respts.t < 0.0) rgba.rgb = vec3(0.0);
    gl_FragColor = vec4(rgba.rgb, 1.0);
}
)";

// Triangle-strip order, scene units.
constexpr float stripVertices[12] = {-6, -1.15f, 0, 6, -1.15f, 0, -6, 1.15f, 0, 6, 1.15f, 0};
constexpr float stripTexCoords[8] = {0, 1, 1, 1, 0, 0, 1, 0};

constexpr float nearPlane = 1.0f;
constexpr float farPlane = 20.0f;

// The picture fills the texture from edge to edge.
constexpr float ptL = 0.0f;
constexpr float ptR = 1.0f;
constexpr float ptT = 0.0f;
constexpr float ptB = 1.0f;

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
    const std::string fragmentStage =
        std::string("precision highp float;\n") + frameDeclarations + stripLookup + yuvSampling + mainStep;
    _program = buildProgram(frameVertexStage, fragmentStage.c_str());
    if (_program == 0) return -1;
    fetchProgramLocations();
    _ptZmLoc = glGetUniformLocation(_program, "fPt_Zm");
    _ptLLoc = glGetUniformLocation(_program, "fPt_L");
    _ptRLoc = glGetUniformLocation(_program, "fPt_R");
    _ptTLoc = glGetUniformLocation(_program, "fPt_T");
    _ptBLoc = glGetUniformLocation(_program, "fPt_B");
    return 0;
}

int CylinderSideRender::render(int surfaceWidth, int surfaceHeight, int, int, Texture& texture) {
    if (_size.changeTo(surfaceWidth, surfaceHeight)) setFrustumByAspect(_matrix, _size.aspect(), nearPlane, farPlane);
    if (!_size._sized) return -1;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    _viewport = {0, 0, surfaceWidth, surfaceHeight};
    glViewport(0, 0, surfaceWidth, surfaceHeight);
    _motion.step();
    if (_program != 0) draw(texture);
    return 0;
}

void CylinderSideRender::draw(Texture& texture) {
    matrixIdentity(_matrix._modelMatrix);
    matrixLookAt(_matrix._viewMatrix, 0, 0, _motion._eyeZ, 0, 0, 0, 0, 1, 0);
    glUseProgram(_program);
    sendCut();
    enableStrip();
    bindFrameTextures(texture, _matrix.computeMvp());
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    disableStrip();
}

void CylinderSideRender::sendCut() {
    glUniform1f(_ptZmLoc, _motion._ptZm);
    glUniform1f(_ptLLoc, ptL);
    glUniform1f(_ptRLoc, ptR);
    glUniform1f(_ptTLoc, ptT);
    glUniform1f(_ptBLoc, ptB);
}

void CylinderSideRender::enableStrip() {
    const auto position = static_cast<GLuint>(_positionLoc);
    const auto texCoord = static_cast<GLuint>(_texCoordLoc);
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, stripVertices);
    glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, stripTexCoords);
    glEnableVertexAttribArray(position);
    glEnableVertexAttribArray(texCoord);
}

void CylinderSideRender::disableStrip() {
    glDisableVertexAttribArray(static_cast<GLuint>(_texCoordLoc));
    glDisableVertexAttribArray(static_cast<GLuint>(_positionLoc));
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
