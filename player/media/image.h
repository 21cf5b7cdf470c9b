#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zetplay {

/// Upright picture: RGB, 3 bytes a pixel, top row first, no padding.
struct Image {
    Image() = default;
    Image(int imageWidth, int imageHeight)
        : width(imageWidth),
          height(imageHeight),
          rgb(3 * static_cast<std::size_t>(imageWidth) * static_cast<std::size_t>(imageHeight)) {}

    std::uint8_t* row(int y) { return rgb.data() + 3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(y); }
    const std::uint8_t* row(int y) const { return const_cast<Image*>(this)->row(y); }

    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    std::vector<std::uint8_t> rgb;
};

/// Upright picture in memory of somebody else's: words of 32 bits that hold 0xRRGGBB below what means nothing, the top
/// row first.
struct Pixels {
    const std::uint8_t* first;
    int lineSize;  ///< bytes
    int width;     ///< pixels
    int height;    ///< pixels
};

Image imageFromPixels(const Pixels& pixels);

/// From RGBA without padding, whose first row is the top one or, as OpenGL reads it, the bottom one. Alpha is dropped.
Image imageFromRgba(const std::vector<std::uint8_t>& rgba, int width, int height, bool topRowFirst);

}  // namespace zetplay
