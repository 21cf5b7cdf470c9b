#include "bus/color.h"

#include <algorithm>

namespace zetplay {

namespace {

/// A matrix of ITU-T H.273, table 4: the weights of red and blue in luma.
struct Matrix {
    std::int32_t code;
    float red;
    float blue;
};

constexpr Matrix matrices[] = {
    {zet::COLOR_MATRIX_BT709, 0.2126f, 0.0722f},   {zet::COLOR_MATRIX_FCC, 0.30f, 0.11f},
    {zet::COLOR_MATRIX_BT470BG, 0.299f, 0.114f},   {zet::COLOR_MATRIX_BT601, 0.299f, 0.114f},
    {zet::COLOR_MATRIX_SMPTE240M, 0.212f, 0.087f}, {zet::COLOR_MATRIX_BT2020, 0.2627f, 0.0593f},
};

/// From samples to colours, both 0 to 255.
struct Conversion {
    float black;  // of luma
    float grey;   // of chroma
    float luma;
    float redV, greenU, greenV, blueU;
};

Conversion conversionFor(const zet::FrameColor& color) {
    for (const auto& [code, red, blue] : matrices) {
        if (code != color.matrix) continue;
        const float luma = color.fullRange ? 1 : 255.0f / 219;
        const float chroma = color.fullRange ? 1 : 255.0f / 224;
        const float redV = 2 * (1 - red);
        const float blueU = 2 * (1 - blue);
        const float green = 1 - red - blue;
        return {color.fullRange ? 0.0f : 16.0f, 128,           luma, redV * chroma, -blueU * blue / green * chroma,
                -redV * red / green * chroma,   blueU * chroma};
    }
    // The module's default.
    return {0, 127.5f, 1, 1.13983f, -0.39465f, -0.58060f, 2.03211f};
}

std::uint8_t toByte(float value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0f, 255.0f) + 0.5f);
}

}  // namespace

void convertToRgba(const Picture& picture, std::uint8_t* rgba) {
    const Conversion by = conversionFor(picture.color);
    for (int row = 0; row < picture.height; ++row) {
        const std::uint8_t* const y = picture.y + static_cast<std::ptrdiff_t>(row) * picture.yLineSize;
        const std::ptrdiff_t chroma = static_cast<std::ptrdiff_t>(row / 2) * picture.uvLineSize;
        for (int column = 0; column < picture.width; ++column, rgba += 4) {
            const float luma = by.luma * (static_cast<float>(y[column]) - by.black);
            const float u = static_cast<float>(picture.u[chroma + column / 2]) - by.grey;
            const float v = static_cast<float>(picture.v[chroma + column / 2]) - by.grey;
            rgba[0] = toByte(luma + by.redV * v);
            rgba[1] = toByte(luma + by.greenU * u + by.greenV * v);
            rgba[2] = toByte(luma + by.blueU * u);
            rgba[3] = 255;
        }
    }
}

}  // namespace zetplay
