#pragma once

#include <optional>

#include "zet/records.h"

namespace zet::ZETShow {

/// From the samples of Y, U and V, each 0 to 1, to red, green and blue. With y = luma * Y + lumaOffset,
/// u = U - chromaMiddle and v = V - chromaMiddle: R = y + redOfV * v, G = y + greenOfU * u + greenOfV * v,
/// B = y + blueOfU * u. In all matrices in use red has no share of u, and blue none of v.
struct ColorTransform {
    float luma;
    float lumaOffset;
    float chromaMiddle;
    float redOfV;
    float greenOfU;
    float greenOfV;
    float blueOfU;

    bool operator==(const ColorTransform&) const = default;
};

/// The colours until the player sets others: full-range Y, the luma of ITU-R BT.601 with the weights of analogue U and
/// V (0.492 and 0.877), not those of JFIF (1.772 and 1.402 instead of 2.03211 and 1.13983).
inline constexpr ColorTransform defaultColor = {
    .luma = 1.0f,
    .lumaOffset = 0.0f,
    .chromaMiddle = 0.5f,
    .redOfV = 1.13983f,
    .greenOfU = -0.39465f,
    .greenOfV = -0.58060f,
    .blueOfU = 2.03211f,
};

/// The transform of 8-bit samples by ITU-T H.273, equations 20 to 25 and 38 to 40; `defaultColor` for an
/// unspecified matrix; nothing for one outside `ColorMatrix`.
std::optional<ColorTransform> findColorTransform(const FrameColor& color);

}  // namespace zet::ZETShow
