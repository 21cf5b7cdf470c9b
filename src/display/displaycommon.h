#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zet::ZETShow {

/// A face of the current frame, in pixels of the picture, origin at its top left corner.
struct FaceInfo {
    std::string name;
    int gender = 0;  // 0 female, anything else male
    unsigned age = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// A rectangle of the current frame, in pixels of the picture, origin at its top left corner.
struct ZoomRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// The square or rectangle of the lens circle, in pixels of the picture, origin at its top left corner.
struct CropParam {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const CropParam&) const = default;
};

/// The current frame: its GL textures and what was found in it. Render thread.
struct Texture {
    Texture() = default;
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    /// Redefines one plane from tightly packed rows of `width` texels, top row first.
    void upload(int index, const void* data, GLenum format, int width, int height);
    /// Puts the planes in force and forgets the cropped picture, whose texture may go with its view.
    void usePlanes();
    /// Deletes the planes' textures and forgets their names.
    void clear();

    GLuint textures[3] = {};      // planes: Y as luminance, U and V as luminance and alpha; the third stays 0
    GLuint cropTextures[3] = {};  // first: the cropped picture, a texture that the view owns
    int textureSize = 0;          // textures in force: 2 for the planes of a frame, 1 for the cropped RGBA picture
    GLuint* current = textures;   // the array in force
    std::vector<FaceInfo> faces;
    std::vector<ZoomRect> rects;
    CropParam cropParam;
};

/// Whether `size` bytes hold an RGBA picture of that many pixels; false where there is no such picture.
constexpr bool holdsPicture(int size, int width, int height) {
    return width > 0 && height > 0 && std::int64_t{width} * height <= size / 4;
}

/// Lets the texture that is bound be sampled between its texels and up to its edges, at any size: OpenGL ES 2 shows one
/// whose sides aren't powers of two only without mipmaps and with clamped edges. Render thread.
void sampleSmoothly();

/// Logs and clears what glGetError holds.
void checkGlError(const char* file, int line);

}  // namespace zet::ZETShow
