// Pictures beside the window: the frame cut to its lens region for the dewarping views, and pixels back to memory.

#include <string>

#include "render/program.h"
#include "render/render.h"
#include "render/shaderpieces.h"
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
    gl_FragColor = samplePicture(v_texCoord);
}
)";

// A triangle strip over the whole picture, beginning at its last row.
constexpr float corners[8] = {-1, 1, 1, 1, -1, -1, 1, -1};
constexpr float wholeTexCoords[8] = {0, 0, 1, 0, 0, 1, 1, 1};

}  // namespace

int Render::ensureOffscreenResources() {
    if (_textureProgram == 0) {
        const std::string fragmentStage =
            std::string("precision mediump float;\n") + frameDeclarations + yuvSampling + mainStep;
        _textureProgram = buildProgram(vertexStage, fragmentStage.c_str());
        if (_textureProgram == 0) return -1;
        _texturePlaneSizeLoc = glGetUniformLocation(_textureProgram, "planeSize");
        _texturePositionLoc = glGetAttribLocation(_textureProgram, "a_position");
        _textureTexCoordLoc = glGetAttribLocation(_textureProgram, "a_texCoord");
        _textureYLoc = glGetUniformLocation(_textureProgram, "y_texture");
        _textureUvLoc = glGetUniformLocation(_textureProgram, "uv_texture");
    }
    if (_readerTexture == 0) {
        glGenTextures(1, &_readerTexture);
        glBindTexture(GL_TEXTURE_2D, _readerTexture);
        sampleSmoothly();
    }
    if (_textureFrameBuffer == 0) glGenFramebuffers(1, &_textureFrameBuffer);
    return 0;
}

int Render::cropTexture(Texture& texture, int width, int height, const CropParam* cropParam) {
    ZETLog::instance().error("Render::cropTexture in.\r\n");
    if (ensureOffscreenResources() != 0) return -1;
    glUseProgram(_textureProgram);
    glBindFramebuffer(GL_FRAMEBUFFER, _textureFrameBuffer);
    glBindTexture(GL_TEXTURE_2D, _readerTexture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, _readerTexture, 0);
    glViewport(0, 0, width, height);
    bindPicture(texture, _texturePlaneSizeLoc, _textureYLoc, _textureUvLoc);
    if (cropParam) {
        ZETLog::instance().error("Render::cropTexture cropParam:%p.\r\n", static_cast<const void*>(cropParam));
        const auto share = [](int part, int whole) { return static_cast<float>(part) / static_cast<float>(whole); };
        const float left = share(cropParam->x, width);
        const float right = share(cropParam->x + cropParam->width, width);
        const float top = share(cropParam->y, height);
        const float bottom = share(cropParam->y + cropParam->height, height);
        const float texCoords[8] = {left, bottom, right, bottom, left, top, right, top};
        drawOffscreenQuad(texCoords);
        texture.textureSize = 1;
        texture.current = texture.cropTextures;
        texture.cropTextures[0] = _readerTexture;
    } else {
        drawOffscreenQuad(wholeTexCoords);
    }
    glViewport(_viewport.x, _viewport.y, _viewport.width, _viewport.height);
    glFinish();
    return 0;
}

void Render::drawOffscreenQuad(const float* texCoords) {
    const auto position = static_cast<GLuint>(_texturePositionLoc);
    const auto texCoord = static_cast<GLuint>(_textureTexCoordLoc);
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
    glEnableVertexAttribArray(texCoord);
    glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, texCoords);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(texCoord);
    glDisableVertexAttribArray(position);
}

int Render::readTexture(Texture& texture, void* data, int dataSize, int width, int height) {
    if (ensureOffscreenResources() != 0) return -1;
    if (!data || !holdsPicture(dataSize, width, height)) return -1;
    ZETLog::instance().error("Render::readTexture dataSize:%d, width:%d, height:%d, texture.textureSize:%d\r\n",
                             dataSize, width, height, texture.textureSize);
    if (texture.textureSize == 1) {
        glBindFramebuffer(GL_FRAMEBUFFER, _textureFrameBuffer);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture.current[0], 0);
        glFinish();
    } else {
        cropTexture(texture, width, height, nullptr);
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, data);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return 0;
}

int Render::readScreen(void* data, int dataSize, int* outWidth, int* outHeight) {
    if (!data || !holdsPicture(dataSize, _viewport.width, _viewport.height)) return -1;
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glFinish();
    glReadPixels(_viewport.x, _viewport.y, _viewport.width, _viewport.height, GL_RGBA, GL_UNSIGNED_BYTE, data);
    *outWidth = _viewport.width;
    *outHeight = _viewport.height;
    return 0;
}

}  // namespace zet::ZETShow
