#include "media/pictureplanes.h"

#include <cstring>

extern "C" {
#include <libavutil/buffer.h>
}

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

Planes PlanePool::shape(Picture& picture, int width, int height) {
    picture.memory.reset();
    const int lineSize = (width + 3) / 4 * 4;
    const std::size_t luma = static_cast<std::size_t>(lineSize) * static_cast<std::size_t>(height);
    const std::size_t chroma = luma / 4;
    AVBufferRef* const buffer = _buffers.get(luma + 2 * chroma);
    picture.memory = std::shared_ptr<AVBufferRef>(buffer, [](AVBufferRef* owned) { av_buffer_unref(&owned); });
    const Planes planes{lineSize, lineSize / 2, buffer->data, buffer->data + luma, buffer->data + luma + chroma};
    picture.width = width;
    picture.height = height;
    picture.yLineSize = planes.yLineSize;
    picture.uvLineSize = planes.uvLineSize;
    picture.y = planes.y;
    picture.u = planes.u;
    picture.v = planes.v;
    return planes;
}

void copyPlanes(const Picture& from, const Planes& to) {
    const std::size_t luma = static_cast<std::size_t>(from.yLineSize) * static_cast<std::size_t>(from.height);
    std::memcpy(to.y, from.y, luma);
    std::memcpy(to.u, from.u, luma / 4);
    std::memcpy(to.v, from.v, luma / 4);
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
