#pragma once

#include <cstdint>

namespace zet::ZETShow {

/// Writes a date and time into a picture: local time, white, at the left edge, a twentieth of the picture's height.
///
/// `timeMs` counts from 1970-01-01 UTC; `data` is `height` rows of `lineSize` bytes, top row first, in FFmpeg's
/// `pixelFormat`. The font is a regular file. Where the text can't be written the log says so and the picture stays
/// whole. Any thread. The log of libav, which is the player's too, is left alone.
void filterData(std::int64_t timeMs, std::uint8_t* data, int width, int height, int lineSize, const char* fontPath,
                int pixelFormat);

}  // namespace zet::ZETShow
