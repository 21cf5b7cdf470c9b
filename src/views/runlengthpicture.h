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
/// The header is width and height, 16 bits each. A token begins with a word W (all words are little-endian): bits 0
/// to 7 are a value, bits 8 to 12 belong to a length, bit 13 marks a third byte, bit 14 without bit 13 a third and
/// a fourth, bit 15 a fill. The length is bits 8 to 12; with three bytes these bits count as a high byte above
/// the third; with four the third byte is the low one and the fourth the middle one. A fill is `length` times the
/// value, a literal is the value and then `length - 1` bytes from behind the token.
PlanarPicture unpackPicture(std::span<const std::uint8_t> stream);

/// The picture as RGBA, opaque, top row first: limited-range BT.601, with chroma sampled bilinearly at each pixel.
std::vector<std::uint8_t> toRgba(const PlanarPicture& picture);

}  // namespace zet::ZETShow
