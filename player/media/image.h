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

enum class PixelOrder {
    words,  ///< words of 32 bits, 0x??RRGGBB with the top byte undefined
    rgba,   ///< four bytes; alpha means nothing
};

/// Upright picture in memory that it doesn't own.
struct Pixels {
    const std::uint8_t* first;  ///< of the top row
    int lineSize;               ///< bytes to the row below; negative where rows go upward in memory
    int width;                  ///< pixels
    int height;                 ///< pixels
    PixelOrder order = PixelOrder::words;
};

Image imageFromPixels(const Pixels& pixels);

/// From RGBA without padding. The first row is the top one or, as OpenGL reads it, the bottom one. Alpha is dropped.
Image imageFromRgba(const std::vector<std::uint8_t>& rgba, int width, int height, bool topRowFirst);

}  // namespace zetplay
