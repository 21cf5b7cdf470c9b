#pragma once

#include <cstddef>
#include <cstdint>

#include "media/bufferpool.h"
#include "media/source.h"

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

/// The planes of a picture that is being made.
struct Planes {
    int yLineSize = 0;
    int uvLineSize = 0;
    std::uint8_t* y = nullptr;
    std::uint8_t* u = nullptr;
    std::uint8_t* v = nullptr;
};

/// Reusable memory for pictures.
class PlanePool {
public:
    /// Gives `picture` its size, line sizes and new planes. Write them before anybody else gets the picture. Both sides
    /// must be even and above 0. The line size of Y is the width rounded up to a multiple of 4, that of the chroma
    /// planes half of it, as the module requires.
    Planes shape(Picture& picture, int width, int height);

private:
    BufferPool _buffers;
};

/// Copies samples between pictures of the same shape.
void copyPlanes(const Picture& from, const Planes& to);

/// Copies the plane's rows to `to`; padding repeats the row's last sample.
void copyPlane(const PlaneView& from, std::uint8_t* to, int lineSize);

}  // namespace zetplay
