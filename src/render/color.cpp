#include "render/color.h"

namespace zet::ZETShow {

namespace {

// The shares of red and blue in luma; green has the rest.
struct LumaShares {
    double red;
    double blue;
};

// ITU-T H.273, table 4.
std::optional<LumaShares> lumaShares(int matrix) {
    switch (matrix) {
        case COLOR_MATRIX_BT709:
            return LumaShares{0.2126, 0.0722};
        case COLOR_MATRIX_FCC:
            return LumaShares{0.30, 0.11};
        case COLOR_MATRIX_BT470BG:
        case COLOR_MATRIX_BT601:
            return LumaShares{0.299, 0.114};
        case COLOR_MATRIX_SMPTE240M:
            return LumaShares{0.212, 0.087};
        case COLOR_MATRIX_BT2020:
            return LumaShares{0.2627, 0.0593};
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<ColorTransform> findColorTransform(const FrameColor& color) {
    if (color.matrix == COLOR_MATRIX_UNSPECIFIED) return defaultColor;
    const auto shares = lumaShares(color.matrix);
    if (!shares) return std::nullopt;
    const double green = 1.0 - shares->red - shares->blue;
    const double lumaScale = color.fullRange ? 1.0 : 255.0 / 219.0;
    const double chromaScale = color.fullRange ? 1.0 : 255.0 / 224.0;
    const double blueOfU = 2.0 * (1.0 - shares->blue) * chromaScale;
    const double redOfV = 2.0 * (1.0 - shares->red) * chromaScale;
    const auto luma = static_cast<float>(lumaScale);
    constexpr float middle = 128.0f / 255.0f;
    return ColorTransform{
        {luma, luma, luma,                                                                        //
         0.0f, static_cast<float>(-blueOfU * shares->blue / green), static_cast<float>(blueOfU),  //
         static_cast<float>(redOfV), static_cast<float>(-redOfV * shares->red / green), 0.0f},
        {color.fullRange ? 0.0f : 16.0f / 255.0f, middle, middle},
    };
}

}  // namespace zet::ZETShow
