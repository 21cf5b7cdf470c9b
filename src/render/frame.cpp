#include "render/frame.h"

#include <algorithm>

#include "zet/zetlog.h"

namespace zet::ZETShow {

void checkGlError(const char* file, int line) {
    // A lost context answers every call with an error, so the number of readings has a bound.
    for (int readings = 0; readings < 32; ++readings) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR) return;
        ZETLog::instance().warning("GL Error: 0x%x %s : %d \n", error, file, line);
    }
}

void sampleSmoothly() {
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

void Frame::upload(const void* luma, int lumaLineSize, const void* chroma, int chromaLineSize, int rows) {
    if (!hasPlanes()) {
        for (Plane& plane : _planes) glGenTextures(1, &plane.name);
    }
    update(_planes[lumaUnit], lumaUnit, GL_LUMINANCE, lumaLineSize, rows, luma);
    update(_planes[chromaUnit], chromaUnit, GL_LUMINANCE_ALPHA, chromaLineSize, rows / 2, chroma);
}

void Frame::update(Plane& plane, GLint unit, GLenum format, int planeWidth, int planeHeight, const void* data) {
    glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
    glBindTexture(GL_TEXTURE_2D, plane.name);
    if (planeWidth == plane.width && planeHeight == plane.height) {
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, planeWidth, planeHeight, format, GL_UNSIGNED_BYTE, data);
        return;
    }
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), planeWidth, planeHeight, 0, format, GL_UNSIGNED_BYTE,
                 data);
    sampleSmoothly();
    // Where there was no memory for it, the next frame tries again.
    const bool allocated = glGetError() == GL_NO_ERROR;
    plane.width = allocated ? planeWidth : 0;
    plane.height = allocated ? planeHeight : 0;
}

void Frame::setSize(int newWidth, int newHeight, int newLineSize) {
    width = newWidth;
    height = newHeight;
    lineSize = newLineSize;
}

void Frame::setLensRegion(const int* numbers) {
    _lensRegion.reset();
    if (numbers) std::copy_n(numbers, 4, _lensRegion.emplace().begin());
}

void Frame::findRegion(bool square) {
    const CropParam crop = findLensRegion(_lensRegion ? _lensRegion->data() : nullptr, width, height, lineSize, square);
    isCropped = crop != CropParam{0, 0, width, height};
    region = isCropped ? mapOntoRegion(crop, width, height) : RegionMap{};
}

void Frame::clear() {
    glBindTexture(GL_TEXTURE_2D, 0);
    checkGlError(__FILE__, __LINE__);
    for (Plane& plane : _planes) {
        if (plane.name == 0) continue;
        ZETLog::instance().debug("Texture::clear %u", plane.name);
        glDeleteTextures(1, &plane.name);
        checkGlError(__FILE__, __LINE__);
        plane = {};
    }
}

}  // namespace zet::ZETShow
