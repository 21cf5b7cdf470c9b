#pragma once

#include <GLES2/gl2.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "render/color.h"
#include "render/lensregion.h"

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

// Texture units. The planes stay bound to theirs from one upload to the next; everything else that a program samples
// takes the third.
inline constexpr GLint lumaUnit = 0;
inline constexpr GLint chromaUnit = 1;
inline constexpr GLint otherUnit = 2;

/// The current picture: its planes in GL, their colours, what was found in it, and where its lens circle lies. Render
/// thread.
struct Frame {
    Frame() = default;
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    bool hasPlanes() const { return _planes[0].name != 0; }
    /// Takes Y, of `lineSize` by `height` texels, and U and V woven together, of `chromaLineSize` by half the height:
    /// tightly packed rows, top row first. New textures are made where a size has changed.
    void upload(const void* luma, int lineSize, const void* chroma, int chromaLineSize, int height);
    /// The picture's size, pixels, and that of a line of its luma, bytes.
    void setSize(int width, int height, int lineSize);
    /// Four numbers as `YUV420PData` has them, or null for none.
    void setLensRegion(const int* numbers);
    /// Works the lens region out for the size that was set; see `findLensRegion`.
    void findRegion(bool square);
    /// Deletes the planes' textures and forgets their names.
    void clear();

    int width = 0;  // pixels
    int height = 0;
    int lineSize = 0;                     // bytes of a row of its luma, padding included
    RegionMap region;                     // where the lens region lies in the textures
    bool isCropped = false;               // the lens region is not the whole picture
    ColorTransform color = defaultColor;  // of all frames until the player says otherwise
    std::vector<FaceInfo> faces;
    std::vector<ZoomRect> rects;

private:
    struct Plane {
        GLuint name = 0;
        int width = 0;  // texels
        int height = 0;
    };

    static void update(Plane& plane, GLint unit, GLenum format, int width, int height, const void* data);

    std::optional<std::array<int, 4>> _lensRegion;
    Plane _planes[2];  // by texture unit: Y as luminance, U and V as luminance and alpha
};

/// Lets the texture that is bound be sampled between its texels and up to its edges, at any size: OpenGL ES 2 shows one
/// whose sides aren't powers of two only without mipmaps and with clamped edges. Render thread.
void sampleSmoothly();

/// Logs and clears what glGetError holds.
void checkGlError(const char* file, int line);

}  // namespace zet::ZETShow
