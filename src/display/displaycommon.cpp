#include "display/displaycommon.h"

#include "zet/zetlog.h"

namespace zet::ZETShow {

void checkGlError(const char* file, int line) {
    // A lost context answers every call with an error, so the number of readings has a bound.
    for (int readings = 0; readings < 32; ++readings) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR) return;
        ZETLog::instance().error("GL Error: 0x%x %s : %d \n", error, file, line);
    }
}

void sampleSmoothly() {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void Texture::upload(int index, const void* data, GLenum format, int width, int height) {
    glBindTexture(GL_TEXTURE_2D, textures[index]);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), width, height, 0, format, GL_UNSIGNED_BYTE, data);
    sampleSmoothly();
}

void Texture::usePlanes() {
    current = textures;
    cropTextures[0] = 0;
}

void Texture::clear() {
    glBindTexture(GL_TEXTURE_2D, 0);
    checkGlError(__FILE__, __LINE__);
    for (GLuint& name : textures) {
        if (name == 0) continue;
        ZETLog::instance().error("Texture::clear %u", name);
        glDeleteTextures(1, &name);
        checkGlError(__FILE__, __LINE__);
        name = 0;
    }
}

}  // namespace zet::ZETShow
