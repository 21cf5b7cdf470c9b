#include "overlay/imageoverlay.h"

#include <algorithm>

#include "overlay/bmpfile.h"
#include "render/frame.h"
#include "render/mesh.h"
#include "render/program.h"

namespace zet::ZETShow {

namespace {

// Reads a_position, a_texCoord and u_mapMatrix; leaves v_texCoord.
const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
varying vec2 v_texCoord;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = a_texCoord;
}
)";

// The file's bytes are blue, green, red: they are put in order here, not in memory.
const char* const fragmentStage = R"(
uniform sampler2D u_texture;
varying vec2 v_texCoord;
void main() {
    gl_FragColor = texture2D(u_texture, v_texCoord).bgra;
}
)";

constexpr int fromTop = 1;
constexpr int fromBottom = 2;

}  // namespace

ImageOverlay::~ImageOverlay() {
    if (_overlayProgram == 0) return;
    glDeleteProgram(_overlayProgram);
    glDeleteTextures(1, &_overlayTexture);
}

int ImageOverlay::initOverlay() {
    _overlayProgram = buildProgram(vertexStage, joinFragment({fragmentStage}).c_str());
    if (_overlayProgram == 0) return -1;
    _overlayMatrixLoc = glGetUniformLocation(_overlayProgram, "u_mapMatrix");
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glUseProgram(_overlayProgram);
    glUniform1i(glGetUniformLocation(_overlayProgram, "u_texture"), otherUnit);
    glGenTextures(1, &_overlayTexture);
    return 0;
}

void ImageOverlay::loadImage(const char* path, const float* rectangle) {
    if (!path || !rectangle) return;
    const auto file = readFile(path);
    BmpPicture picture;
    const BmpVerdict verdict = parseBmp(file.data(), file.size(), picture);
    if (verdict == BmpVerdict::foreign) return;
    _overlayRowOrder = 0;
    GLint limit = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (verdict == BmpVerdict::broken || _overlayProgram == 0 || std::max(picture.width, picture.height) > limit)
        return;

    const GLenum format = picture.bitsPerPixel == 24 ? GL_RGB : GL_RGBA;
    glActiveTexture(GL_TEXTURE0 + otherUnit);
    glBindTexture(GL_TEXTURE_2D, _overlayTexture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);  // rows of 24 bits have no padding
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), picture.width, picture.height, 0, format,
                 GL_UNSIGNED_BYTE, picture.pixels);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    _overlayRowOrder = picture.topRowFirst ? fromTop : fromBottom;
    place(rectangle);
}

void ImageOverlay::place(const float* rectangle) {
    const float left = static_cast<float>((rectangle[0] - 0.5) * 2.0);
    const float top = static_cast<float>((0.5 - rectangle[1]) * 2.0);
    const float right = left + (rectangle[2] + rectangle[2]);
    const float bottom = top - (rectangle[3] + rectangle[3]);
    // Texture row 0 lies at the strip's last two corners: the top for a file that begins there.
    const float first = _overlayRowOrder == fromTop ? bottom : top;
    const float last = _overlayRowOrder == fromTop ? top : bottom;
    const float corners[12] = {left, first, 0, right, first, 0, left, last, 0, right, last, 0};
    std::copy_n(corners, 12, _overlayVertices);
}

int ImageOverlay::drawOverlay(const float* texCoords, const float* matrix) {
    if (_overlayProgram == 0) return -1;
    glUseProgram(_overlayProgram);
    glUniformMatrix4fv(_overlayMatrixLoc, 1, GL_FALSE, matrix);
    glActiveTexture(GL_TEXTURE0 + otherUnit);
    glBindTexture(GL_TEXTURE_2D, _overlayTexture);
    bindArrays(_overlayVertices, 3, texCoords);
    glEnable(GL_BLEND);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_BLEND);
    releaseArrays();
    return 0;
}

}  // namespace zet::ZETShow
