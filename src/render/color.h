#pragma once

#include <optional>

#include "zet/records.h"

namespace zet::ZETShow {

/// From the samples of Y, U and V, each 0 to 1, to red, green and blue: matrix * (yuv - offset).
struct ColorTransform {
    float matrix[9];  ///< column-major, as glUniformMatrix3fv takes it
    float offset[3];
};

/// What holds until the player says more: full-range Y, the luma of ITU-R BT.601 with the weights of analogue U and V
/// (0.492 and 0.877), not those of JFIF (1.772 and 1.402 instead of 2.03211 and 1.13983).
inline constexpr ColorTransform defaultColor = {
    {1.0f, 1.0f, 1.0f, 0.0f, -0.39465f, 2.03211f, 1.13983f, -0.58060f, 0.0f},
    {0.0f, 0.5f, 0.5f},
};

/// The transform of 8-bit samples by ITU-T H.273, equations 20 to 25 and 38 to 40; `defaultColor` where the matrix is
/// unspecified; nothing for a matrix that is none of `ColorMatrix`.
std::optional<ColorTransform> findColorTransform(const FrameColor& color);

}  // namespace zet::ZETShow
