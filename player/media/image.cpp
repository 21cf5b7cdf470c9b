#include "media/image.h"

#include <cstring>

namespace zetplay {

namespace {

void copyRgb(const std::uint8_t* from, std::uint8_t* to, int width) {
    for (int x = 0; x < width; ++x, from += 4, to += 3) {
        to[0] = from[0];
        to[1] = from[1];
        to[2] = from[2];
    }
}

}  // namespace

Image imageFromPixels(const Pixels& pixels) {
    Image image(pixels.width, pixels.height);
    for (int y = 0; y < pixels.height; ++y) {
        const std::uint8_t* from = pixels.first + static_cast<std::ptrdiff_t>(y) * pixels.lineSize;
        std::uint8_t* to = image.row(y);
        if (pixels.order == PixelOrder::rgba) {
            copyRgb(from, to, pixels.width);
            continue;
        }
        for (int x = 0; x < pixels.width; ++x, from += 4, to += 3) {
            std::uint32_t word;
            std::memcpy(&word, from, sizeof word);
            to[0] = static_cast<std::uint8_t>(word >> 16);
            to[1] = static_cast<std::uint8_t>(word >> 8);
            to[2] = static_cast<std::uint8_t>(word);
        }
    }
    return image;
}

Image imageFromRgba(const std::vector<std::uint8_t>& rgba, int width, int height, bool topRowFirst) {
    Image image(width, height);
    const std::uint8_t* from = rgba.data();
    for (int y = 0; y < height; ++y) {
        copyRgb(from, image.row(topRowFirst ? y : height - 1 - y), width);
        from += 4 * static_cast<std::ptrdiff_t>(width);
    }
    return image;
}

}  // namespace zetplay
