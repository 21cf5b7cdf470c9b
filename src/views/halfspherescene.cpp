// What a person sees: a thin arc of blue light that goes round the bowl just outside its rim, once in some ten seconds,
// and behind it, all over the dark, small stars whose groups grow bright and dim and which now and then shiver. Both
// follow the bowl's turns and tilts; when the camera comes near they fall away behind it.

#include "views/halfspherescene.h"

#include <algorithm>
#include <cmath>

#include "render/frame.h"
#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/halopicture.h"
#include "views/parts/camera.h"
#include "views/runlengthpicture.h"

namespace zet::ZETShow {

namespace {

const char* const haloStage = R"(
uniform sampler2D halo;
varying vec2 v_texCoord;
void main() {
    gl_FragColor = texture2D(halo, v_texCoord);
}
)";

const char* const starVertexStage = R"(
uniform mat4 u_mapMatrix;
uniform float uPointSize;
uniform float uPointLight;
attribute vec3 a_position;
varying float vPointSize;
varying vec4 vLight;
void main() {
    gl_Position = u_mapMatrix * vec4(a_position, 1.0);
    gl_PointSize = uPointSize;
    vPointSize = uPointSize;
    vLight = vec4(vec3(uPointLight), 1.0);
}
)";

// The many small stars, of size 2, are dim and blue-grey, the others white with a blue tint. The size arrives as a
// varying, which need not be exact any more.
const char* const starStage = R"(
precision mediump float;
varying float vPointSize;
varying vec4 vLight;
void main() {
    vec4 color = abs(vPointSize - 2.0) < 0.1 ? vec4(0.4, 0.4, 0.5, 1.0) : vec4(0.9, 0.9, 1.0, 1.0);
    gl_FragColor = color * vLight;
}
)";

constexpr float edge = 4.0f * HalfSphereMotion::_radius;
constexpr float back = -2.0f * HalfSphereMotion::_radius;
constexpr std::array<MeshVertex, 4> backCorners = {{
    {{-edge, -edge, back}, {0, 1}},
    {{edge, -edge, back}, {1, 1}},
    {{-edge, edge, back}, {0, 0}},
    {{edge, edge, back}, {1, 0}},
}};
constexpr float backStep = 0.65f;  // degrees a frame

constexpr float mainSize = 2.0f;  // of the group that counts the frames
constexpr int framesPerShift = 30;
constexpr int lastPointFrame = 999999;

}  // namespace

void lookIntoScene(MatrixState& matrices, const HalfSphereMotion& motion, float eyeZ) {
    lookAlongAxis(matrices, eyeZ);
    matrices.rotateView(180.0f, 0, 0, 1);
    matrices.rotateView(motion._pitch, 1, 0, 0);
    matrixTranslate(matrices._viewMatrix, 0, 0, motion._moveZ);
    matrixTranslate(matrices._viewMatrix, 0, motion._moveY, 0);
    matrices.rotateView(motion._shownYaw + 180.0f, 0, 0, 1);
}

int HalfSphereScene::createPrograms() {
    return createBackProgram() == 0 ? createPointProgram() : -1;
}

int HalfSphereScene::createBackProgram() {
    _backProgram = buildProgram(frameVertexStage, joinFragment({haloStage}).c_str());
    if (_backProgram == 0) return -1;
    _backMapMatrixLoc = glGetUniformLocation(_backProgram, "u_mapMatrix");
    glUseProgram(_backProgram);
    glUniform1i(glGetUniformLocation(_backProgram, "halo"), otherUnit);
    _backQuad.load(backCorners);
    return 0;
}

int HalfSphereScene::createPointProgram() {
    _pointProgram = buildProgram(starVertexStage, starStage);
    if (_pointProgram == 0) return 0;
    _pointMapMatrixLoc = glGetUniformLocation(_pointProgram, "u_mapMatrix");
    _pointSizeLoc = glGetUniformLocation(_pointProgram, "uPointSize");
    _pointLightLoc = glGetUniformLocation(_pointProgram, "uPointLight");
    return 0;
}

void HalfSphereScene::loadPicture() {
    const PlanarPicture picture = unpackPicture(haloPicture);
    const std::vector<std::uint8_t> rgba = toRgba(picture);
    glGenTextures(1, &_backTexture);
    glActiveTexture(GL_TEXTURE0 + otherUnit);
    glBindTexture(GL_TEXTURE_2D, _backTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width, picture.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    sampleSmoothly();
}

HalfSphereScene::~HalfSphereScene() {
    // 0, for what has never been made, is a name that GL ignores here.
    glDeleteProgram(_backProgram);
    glDeleteProgram(_pointProgram);
    glDeleteTextures(1, &_backTexture);
}

void HalfSphereScene::setFrustum(float aspect, float near, float far) {
    setFrustumByAspect(_backMatrix, aspect, near, far);
    setFrustumByAspect(_pointMatrix, aspect, near, far);
}

void HalfSphereScene::drawBack(const HalfSphereMotion& motion) {
    glUseProgram(_backProgram);
    matrixIdentity(_backMatrix._modelMatrix);
    lookIntoScene(_backMatrix, motion, motion.parallaxEyeZ());
    if (_backAngle > 360.0f) _backAngle = 0.0f;
    _backAngle += backStep;
    matrixRotate(_backMatrix._modelMatrix, _backAngle, 0, 0, 1);
    glUniformMatrix4fv(_backMapMatrixLoc, 1, GL_FALSE, _backMatrix.computeMvp());
    glActiveTexture(GL_TEXTURE0 + otherUnit);
    glBindTexture(GL_TEXTURE_2D, _backTexture);
    _backQuad.bind();
    _backQuad.draw();
}

void HalfSphereScene::drawPoints(const HalfSphereMotion& motion) {
    if (_pointProgram == 0) return;
    for (const Group& group : _groups) {
        // In the first frame each further group casts all stars anew; the last cast is what the next frames show.
        if (group.index > 0 && !_pointsPlaced) _stars.place();
        drawGroup(motion, group);
    }
    _pointsPlaced = true;
}

void HalfSphereScene::drawGroup(const HalfSphereMotion& motion, const Group& group) {
    glUseProgram(_pointProgram);
    matrixIdentity(_pointMatrix._modelMatrix);
    lookIntoScene(_pointMatrix, motion, motion.parallaxEyeZ());
    glUniformMatrix4fv(_pointMapMatrixLoc, 1, GL_FALSE, _pointMatrix.computeMvp());
    const bool countsFrames = group.size == mainSize;
    if (countsFrames && ++_pointFrame == lastPointFrame) _pointFrame = 0;
    glUniform1f(_pointSizeLoc, group.size);
    glUniform1f(_pointLightLoc, _stars.stepLight(group.index));

    bindArrays(_stars._pointPtr, 3, nullptr);
    glDrawArrays(GL_POINTS, 0, group.count);
    releaseArrays();
    if (countsFrames && _pointFrame % framesPerShift == 0) _stars.shift(group.count);
}

}  // namespace zet::ZETShow
