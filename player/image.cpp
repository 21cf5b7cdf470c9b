#include "image.h"

namespace zetplay {

Image imageFromRgba(const std::vector<std::uint8_t>& rgba, int width, int height, bool topRowFirst) {
    Image image(width, height);
    const std::uint8_t* from = rgba.data();
    for (int y = 0; y < height; ++y) {
        std::uint8_t* to = image.row(topRowFirst ? y : height - 1 - y);
        for (int x = 0; x < width; ++x, from += 4, to += 3) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
        }
    }
    return image;
}

}  // namespace zetplay
