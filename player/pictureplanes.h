#pragma once

#include <cstddef>
#include <cstdint>

#include "source.h"

namespace zetplay {

/// A plane to read, in any of the four orientations: sample (column, row) lies at
/// `origin + row * rowStep + column * sampleStep`.
struct PlaneView {
    const std::uint8_t* origin = nullptr;
    std::ptrdiff_t rowStep = 0;
    std::ptrdiff_t sampleStep = 1;
    int width = 0;
    int height = 0;
};

/// The same plane after `quarterTurns` (0 to 3) turns of 90 degrees clockwise.
PlaneView turned(const PlaneView& plane, int quarterTurns);

/// Gives `picture` its size, line sizes and memory; both sides are even and above 0. The line size of Y is the width
/// rounded up to a multiple of 4, that of the chroma planes half of it, so that the module takes both.
void shapePicture(Picture& picture, int width, int height);

/// Copies the plane's rows to `to`; what a line has past the width repeats the row's last sample.
void copyPlane(const PlaneView& from, std::uint8_t* to, int lineSize);

}  // namespace zetplay
