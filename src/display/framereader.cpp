#include "display/framereader.h"

#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

const char* const vertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
varying vec2 v_texCoord;
void main() {
    gl_Position = a_position;
    v_texCoord = a_texCoord;
}
)";

const char* const mainStep = R"(
void main() {
    gl_FragColor = samplePlanes(v_texCoord);
}
)";

// The picture's first row is drawn last, since GL reads from the bottom.
constexpr std::array<MeshVertex, 4> corners = {{
    {{-1, 1, 0}, {0, 0}},
    {{1, 1, 0}, {1, 0}},
    {{-1, -1, 0}, {0, 1}},
    {{1, -1, 0}, {1, 1}},
}};

int readPixels(const Viewport& part, void* data) {
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(part.x, part.y, part.width, part.height, GL_RGBA, GL_UNSIGNED_BYTE, data);
    return 0;
}

}  // namespace

FrameReader::~FrameReader() {
    if (!_program.isBuilt()) return;
    glDeleteTextures(1, &_picture);
    glDeleteFramebuffers(1, &_frameBuffer);
}

int FrameReader::makeReady(const Frame& frame) {
    if (_program.isBuilt()) return 0;
    if (_program.build(frame.color, vertexStage, {mainStep}) != 0) return -1;
    _quad.load(corners);
    glGenTextures(1, &_picture);
    glGenFramebuffers(1, &_frameBuffer);
    return 0;
}

int FrameReader::readFrame(const Frame& frame, void* data, int dataSize) {
    if (!data || !holdsPicture(dataSize, frame.width, frame.height) || makeReady(frame) != 0) return -1;
    ZETLog::instance().debug("Render::readTexture dataSize:%d, width:%d, height:%d, texture.textureSize:%d\r\n",
                             dataSize, frame.width, frame.height, 2);
    GLint shown[4] = {};
    glGetIntegerv(GL_VIEWPORT, shown);
    glActiveTexture(GL_TEXTURE0 + otherUnit);
    glBindTexture(GL_TEXTURE_2D, _picture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, frame.width, frame.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    sampleSmoothly();
    glBindFramebuffer(GL_FRAMEBUFFER, _frameBuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, _picture, 0);
    glViewport(0, 0, frame.width, frame.height);
    _program.use(frame);
    _quad.bind();
    _quad.draw();
    const int result = readPixels({0, 0, frame.width, frame.height}, data);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(shown[0], shown[1], shown[2], shown[3]);
    return result;
}

int FrameReader::readScreen(const Viewport& viewport, void* data, int dataSize) {
    if (!data || !holdsPicture(dataSize, viewport.width, viewport.height)) return -1;
    return readPixels(viewport, data);
}

}  // namespace zet::ZETShow
