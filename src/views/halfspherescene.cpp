// What a person sees: a thin arc of blue light that goes round the bowl just outside its rim, once in some ten seconds,
// and behind it, all over the dark, small stars whose groups grow bright and dim and which now and then shiver. Both
// follow the bowl's turns and tilts; when the camera comes near they fall away behind it.

#include "views/halfspherescene.h"

#include "display/displaycommon.h"
#include "render/program.h"
#include "render/shaderpieces.h"
#include "views/halopicture.h"
#include "views/parts/camera.h"
#include "views/runlengthpicture.h"

namespace zet::ZETShow {

namespace {

// Reads the three planes of a limited-range BT.601 picture at v_texCoord.
const char* const haloStage = R"(
precision mediump float;
uniform sampler2D tex_y;
uniform sampler2D tex_u;
uniform sampler2D tex_v;
varying vec2 v_texCoord;
void main() {
    float y = 1.1643 * (texture2D(tex_y, v_texCoord).r - 0.0625);
    float u = texture2D(tex_u, v_texCoord).r - 0.5;
    float v = texture2D(tex_v, v_texCoord).r - 0.5;
    gl_FragColor = vec4(y + 1.5958 * v, y - 0.39173 * u - 0.81290 * v, y + 2.017 * u, 1.0);
}
)";

const char* const starVertexStage = R"(
uniform mat4 u_mapMatrix;
uniform float uPointSize;
uniform float uPointLight;
attribute vec3 a_position;
varying float vPointSize;
varying vec4 vAmbient;
void main() {
    gl_Position = u_mapMatrix * vec4(a_position, 1.0);
    gl_PointSize = uPointSize;
    vPointSize = uPointSize;
    vAmbient = vec4(vec3(uPointLight), 1.0);
}
)";

// The many small stars, of size 2, are dim and blue-grey, the others white with a blue tint. The size arrives as a
// varying, which need not be exact any more.
const char* const starStage = R"(
precision mediump float;
varying float vPointSize;
varying vec4 vAmbient;
void main() {
    vec4 color = abs(vPointSize - 2.0) < 0.1 ? vec4(0.4, 0.4, 0.5, 1.0) : vec4(0.9, 0.9, 1.0, 1.0);
    gl_FragColor = color * vAmbient;
}
)";

const char* const planeNames[] = {"tex_y", "tex_u", "tex_v"};

constexpr float edge = 4.0f * HalfSphereMotion::_radius;
constexpr float back = -2.0f * HalfSphereMotion::_radius;
constexpr float backVertices[12] = {-edge, -edge, back, edge, -edge, back, -edge, edge, back, edge, edge, back};
constexpr float backTexCoords[8] = {0, 1, 1, 1, 0, 0, 1, 0};
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
    _backProgram = buildProgram(frameVertexStage, haloStage);
    if (_backProgram == 0) return -1;
    _backMapMatrixLoc = glGetUniformLocation(_backProgram, "u_mapMatrix");
    _backPositionLoc = glGetAttribLocation(_backProgram, "a_position");
    _backTexCoordLoc = glGetAttribLocation(_backProgram, "a_texCoord");
    bool complete = _backMapMatrixLoc >= 0 && _backPositionLoc >= 0 && _backTexCoordLoc >= 0;
    for (int i = 0; i < 3; ++i) {
        _backTexLocs[i] = glGetUniformLocation(_backProgram, planeNames[i]);
        complete = complete && _backTexLocs[i] >= 0;
    }
    return complete ? 0 : -1;
}

int HalfSphereScene::createPointProgram() {
    _pointProgram = buildProgram(starVertexStage, starStage);
    if (_pointProgram == 0) return 0;
    _pointPositionLoc = glGetAttribLocation(_pointProgram, "a_position");
    _pointMapMatrixLoc = glGetUniformLocation(_pointProgram, "u_mapMatrix");
    _pointSizeLoc = glGetUniformLocation(_pointProgram, "uPointSize");
    _pointLightLoc = glGetUniformLocation(_pointProgram, "uPointLight");
    return 0;
}

void HalfSphereScene::loadPicture() {
    const PlanarPicture picture = unpackPicture(haloPicture);
    glGenTextures(3, _backTextures);
    for (int i = 0; i < 3; ++i) {
        glBindTexture(GL_TEXTURE_2D, _backTextures[i]);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, picture.planeWidth(i), picture.planeHeight(i), 0, GL_LUMINANCE,
                     GL_UNSIGNED_BYTE, picture.plane(i));
        sampleSmoothly();
    }
}

HalfSphereScene::~HalfSphereScene() {
    // 0, for what has never been made, is a name that GL ignores here.
    glDeleteProgram(_backProgram);
    glDeleteProgram(_pointProgram);
    glDeleteTextures(3, _backTextures);
}

void HalfSphereScene::setFrustum(float aspect, float near, float far) {
    setFrustumByAspect(_backMatrix, aspect, near, far);
    setFrustumByAspect(_pointMatrix, aspect, near, far);
}

void HalfSphereScene::drawBack(const HalfSphereMotion& motion) {
    glUseProgram(_backProgram);
    matrixIdentity(_backMatrix._modelMatrix);
    _backMatrix.pushMatrix();
    lookIntoScene(_backMatrix, motion, motion.parallaxEyeZ());
    if (_backAngle > 360.0f) _backAngle = 0.0f;
    _backAngle += backStep;
    matrixRotate(_backMatrix._modelMatrix, _backAngle, 0, 0, 1);
    glUniformMatrix4fv(_backMapMatrixLoc, 1, GL_FALSE, _backMatrix.computeMvp());

    const auto position = static_cast<GLuint>(_backPositionLoc);
    const auto texCoord = static_cast<GLuint>(_backTexCoordLoc);
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, backVertices);
    glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, backTexCoords);
    glEnableVertexAttribArray(position);
    glEnableVertexAttribArray(texCoord);
    for (int i = 0; i < 3; ++i) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + i));
        glBindTexture(GL_TEXTURE_2D, _backTextures[i]);
        glUniform1i(_backTexLocs[i], i);
    }
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(texCoord);
    glDisableVertexAttribArray(position);
    _backMatrix.popMatrix();
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
    _pointMatrix.pushMatrix();
    lookIntoScene(_pointMatrix, motion, motion.parallaxEyeZ());
    glUniformMatrix4fv(_pointMapMatrixLoc, 1, GL_FALSE, _pointMatrix.computeMvp());
    const bool countsFrames = group.size == mainSize;
    if (countsFrames && ++_pointFrame == lastPointFrame) _pointFrame = 0;
    glUniform1f(_pointSizeLoc, group.size);
    glUniform1f(_pointLightLoc, _stars.stepLight(group.index));

    const auto position = static_cast<GLuint>(_pointPositionLoc);
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, _stars._pointPtr);
    glEnableVertexAttribArray(position);
    glDrawArrays(GL_POINTS, 0, group.count);
    glDisableVertexAttribArray(position);
    if (countsFrames && _pointFrame % framesPerShift == 0) _stars.shift(group.count);
    _pointMatrix.popMatrix();
}

}  // namespace zet::ZETShow
