#include "colour.h"

#include <algorithm>

namespace zetplay {

namespace {

std::uint8_t toByte(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F) + 0.5F);
}

}  // namespace

void convertToRgba(const Picture& picture, std::uint8_t* rgba) {
    for (int row = 0; row < picture.height; ++row) {
        const std::uint8_t* y = picture.y.data() + static_cast<std::ptrdiff_t>(row) * picture.yLineSize;
        const std::ptrdiff_t chroma = static_cast<std::ptrdiff_t>(row / 2) * picture.uvLineSize;
        for (int column = 0; column < picture.width; ++column, rgba += 4) {
            // The factors of the module's own step from YUV to RGB.
            const float luma = y[column];
            const float u = static_cast<float>(picture.u[static_cast<std::size_t>(chroma + column / 2)]) - 127.5F;
            const float v = static_cast<float>(picture.v[static_cast<std::size_t>(chroma + column / 2)]) - 127.5F;
            rgba[0] = toByte(luma + 1.13983F * v);
            rgba[1] = toByte(luma - 0.39465F * u - 0.58060F * v);
            rgba[2] = toByte(luma + 2.03211F * u);
            rgba[3] = 255;
        }
    }
}

}  // namespace zetplay
