#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zet::ZETShow {

/// An uncompressed picture inside the bytes of a BMP file: blue, green, red and, with 32 bits, alpha; rows unpadded.
struct BmpPicture {
    bool operator==(const BmpPicture&) const = default;

    int width = 0;   // pixels
    int height = 0;  // pixels
    int bitsPerPixel = 0;
    bool topRowFirst = false;
    const std::uint8_t* pixels = nullptr;
};

enum class BmpVerdict {
    foreign,  // no such file: what is shown stays
    broken,   // its sizes don't agree: nothing is shown
    sound,
};

/// Reads the header of a BMP file (BITMAPFILEHEADER and BITMAPINFOHEADER of the Windows GDI). Never reads beyond
/// `size`; writes `picture` only if the verdict is `sound`.
BmpVerdict parseBmp(const std::uint8_t* file, std::size_t size, BmpPicture& picture);

/// The bytes of a regular file; empty if there is none that can be read.
std::vector<std::uint8_t> readFile(const char* path);

}  // namespace zet::ZETShow
