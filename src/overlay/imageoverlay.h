#pragma once

#include <GLES2/gl2.h>

namespace zet::ZETShow {

/// A picture from a BMP file over the flat view, in a rectangle that zooms and pans with the video. Render thread.
class ImageOverlay {
public:
    ImageOverlay() = default;
    ~ImageOverlay();
    ImageOverlay(const ImageOverlay&) = delete;
    ImageOverlay& operator=(const ImageOverlay&) = delete;

    /// 0, or -1 if the program doesn't build.
    int initOverlay();
    /// Replaces picture and place. `rectangle`: x, y, width, height as shares of the video, origin at its top left
    /// corner. A file that isn't a BMP of 24 or 32 bits leaves the old picture, one whose sizes don't agree leaves
    /// none.
    void loadImage(const char* path, const float* rectangle);
    bool hasImage() const { return _overlayRowOrder != 0; }
    /// Draws through the view's matrix, with the video corners' texture coordinates. 0, or -1 without a program.
    int drawOverlay(const float* texCoords, const float* matrix);

private:
    void place(const float* rectangle);

    GLuint _overlayProgram = 0;
    GLint _overlayMatrixLoc = 0;
    GLuint _overlayTexture = 0;
    int _overlayRowOrder = 0;  // 0 no picture, 1 rows from the top, 2 rows from the bottom
    float _overlayVertices[12] = {};
};

}  // namespace zet::ZETShow
