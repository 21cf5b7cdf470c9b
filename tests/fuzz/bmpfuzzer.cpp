// Any bytes as a BMP file. A picture that is accepted lies entirely inside them; a refused one changes nothing.

#include <cstdlib>

#include "overlay/bmpfile.h"

namespace {

volatile unsigned sum = 0;

void check(const std::uint8_t* data, std::size_t size) {
    using namespace zet::ZETShow;
    BmpPicture picture;
    if (parseBmp(data, size, picture) != BmpVerdict::sound) {
        if (picture.pixels || picture.width != 0 || picture.height != 0) std::abort();
        return;
    }
    if (picture.width <= 0 || picture.height <= 0) std::abort();
    if (picture.bitsPerPixel != 24 && picture.bitsPerPixel != 32) std::abort();
    // As GL reads it, row by row to the last byte of the file.
    const std::uint8_t* pixel = picture.pixels;
    for (int row = 0; row < picture.height; ++row) {
        for (int i = 0; i < picture.width * picture.bitsPerPixel / 8; ++i) sum = sum + *pixel++;
    }
    if (pixel != data + size) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check(data, size);
    if (size < 6) return 0;
    // Once more with the correct file size, which few mutants keep.
    std::vector<std::uint8_t> honest(data, data + size);
    for (std::size_t i = 0; i < 4; ++i) honest[2 + i] = static_cast<std::uint8_t>(size >> 8 * i);
    check(honest.data(), size);
    return 0;
}
