#pragma once

#include <cmath>
#include <numbers>

#include "support/picture.h"

namespace zet::test {

/// A frame of 256 by 256 in which chroma tells every place from every other, and steep waves of luma show a shift of
/// two pixels.
inline Frame wavyFrame() {
    return Frame(256, 256, [](int x, int y) {
        const double wave = 2 * std::numbers::pi / 256;
        const double luma = 128 + 25 * std::sin(6 * wave * x) + 25 * std::cos(5 * wave * y);
        return Yuv{static_cast<int>(std::lround(luma)), 95 + 60 * y / 256, 150 - 40 * x / 256};
    });
}

}  // namespace zet::test
