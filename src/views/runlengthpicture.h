#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zet::ZETShow {

/// A planar YUV 4:2:0 picture without padding: Y, then U, then V, top row first. Width and height are even.
struct PlanarPicture {
    const std::uint8_t* plane(int index) const;
    int planeWidth(int index) const { return index == 0 ? width : width / 2; }
    int planeHeight(int index) const { return index == 0 ? height : height / 2; }

    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

/// Unpacks a run-length stream; an empty picture of size 0 if the stream is damaged: its tokens must fill the picture
/// that its header announces exactly.
///
/// The header is width and height, 16 bits each. Tokens follow. A token is a 16-bit word, then up to two bytes. All
/// words are little-endian. Bits of the word:
///
/// | bits | meaning |
/// | --- | --- |
/// | 0 to 7 | the value |
/// | 8 to 12 | H, which makes the length |
/// | 13 | one byte A follows: the length is 256 H + A |
/// | 14, where 13 is 0 | two bytes A and B follow: the length is 65536 H + 256 B + A |
/// | neither | nothing follows: the length is H |
/// | 15 | 1 a fill: the value, length times; 0 a literal: the value, then length - 1 bytes from behind the token |
PlanarPicture unpackPicture(std::span<const std::uint8_t> stream);

/// The picture as RGBA, opaque, top row first: limited-range BT.601, with chroma sampled bilinearly at each pixel.
std::vector<std::uint8_t> toRgba(const PlanarPicture& picture);

}  // namespace zet::ZETShow
