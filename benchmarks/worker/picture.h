#pragma once

#include <cstdint>
#include <vector>

#include "worker/xwindow.h"

namespace bench {

/// The lens circle of all test pictures, in 1/10000 of the picture, as `YUV420PData` takes it.
inline constexpr int lensRegion[4] = {5000, 5000, 4900, 4900};

/// A decoded picture, YUV 4:2:0 in three planes without padding: waves of all colours, finer and finer to the right.
/// `number` shifts them, so that pictures of different numbers differ everywhere.
struct Picture {
    Picture(Size pictureSize, int number);

    Size size;  // a multiple of 8 both ways
    std::vector<std::uint8_t> y, u, v;
};

}  // namespace bench
