#include "pictureplanes.h"

#include <cstring>

namespace zetplay {

PlaneView turned(const PlaneView& plane, int quarterTurns) {
    const std::uint8_t* const lastRow = plane.origin + (plane.height - 1) * plane.rowStep;
    const std::ptrdiff_t toLastSample = (plane.width - 1) * plane.sampleStep;
    switch (quarterTurns) {
        case 1:
            return {lastRow, plane.sampleStep, -plane.rowStep, plane.height, plane.width};
        case 2:
            return {lastRow + toLastSample, -plane.rowStep, -plane.sampleStep, plane.width, plane.height};
        case 3:
            return {plane.origin + toLastSample, -plane.sampleStep, plane.rowStep, plane.height, plane.width};
        default:
            return plane;
    }
}

void shapePicture(Picture& picture, int width, int height) {
    picture.width = width;
    picture.height = height;
    picture.yLineSize = (width + 3) / 4 * 4;
    picture.uvLineSize = picture.yLineSize / 2;
    const std::size_t rows = static_cast<std::size_t>(height);
    picture.y.resize(rows * static_cast<std::size_t>(picture.yLineSize));
    picture.u.resize(rows / 2 * static_cast<std::size_t>(picture.uvLineSize));
    picture.v.resize(rows / 2 * static_cast<std::size_t>(picture.uvLineSize));
}

void copyPlane(const PlaneView& from, std::uint8_t* to, int lineSize) {
    const std::size_t width = static_cast<std::size_t>(from.width);
    for (int row = 0; row < from.height; ++row, to += lineSize) {
        const std::uint8_t* sample = from.origin + row * from.rowStep;
        if (from.sampleStep == 1) {
            std::memcpy(to, sample, width);
        } else {
            for (std::size_t column = 0; column < width; ++column, sample += from.sampleStep) to[column] = *sample;
        }
        std::memset(to + width, to[width - 1], static_cast<std::size_t>(lineSize) - width);
    }
}

}  // namespace zetplay
