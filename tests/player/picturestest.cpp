#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Behind the test framework, whose names its macros would break.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "colour.h"
#include "grab.h"

namespace zetplay {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Grab, ReadsEveryTrueColourLayout) {
    const struct {
        const char* name;
        int depth, bits, bytesPerLine, byteOrder;
        unsigned long red, green, blue;
        Bytes bytes;  // one row of two pixels
        Bytes expected;
    } cases[] = {
        {"24 in 32, little", 24, 32, 8, LSBFirst, 0xff0000, 0xff00, 0xff, {3, 2, 1, 0, 6, 5, 4, 0}, {1, 2, 3, 4, 5, 6}},
        {"24 in 32, big", 24, 32, 8, MSBFirst, 0xff0000, 0xff00, 0xff, {0, 1, 2, 3, 0, 4, 5, 6}, {1, 2, 3, 4, 5, 6}},
        {"blue on top", 24, 32, 8, LSBFirst, 0xff, 0xff00, 0xff0000, {1, 2, 3, 0, 4, 5, 6, 0}, {1, 2, 3, 4, 5, 6}},
        // 5-6-5: red 31 of 31 is 255; green 21 of 63 is 85; blue 0. Then red 0, green 63, blue 10 of 31: 82.26.
        {"16", 16, 16, 4, LSBFirst, 0xf800, 0x7e0, 0x1f, {0xa0, 0xfa, 0xea, 0x07}, {255, 85, 0, 0, 255, 82}},
        // 10 bits each: 1023, 512 (127.6), 0 and 0, 0, 1.
        {"30", 30, 32, 8, LSBFirst, 0x3ff00000, 0xffc00, 0x3ff, {0, 0, 0xf8, 0x3f, 1, 0, 0, 0}, {255, 128, 0, 0, 0, 0}},
    };
    for (const auto& layout : cases) {
        Bytes bytes = layout.bytes;
        XImage picture{};
        picture.width = 2;
        picture.height = 1;
        picture.format = ZPixmap;
        picture.data = reinterpret_cast<char*>(bytes.data());
        picture.byte_order = layout.byteOrder;
        picture.bitmap_unit = picture.bitmap_pad = 32;
        picture.depth = layout.depth;
        picture.bits_per_pixel = layout.bits;
        picture.bytes_per_line = layout.bytesPerLine;
        picture.red_mask = layout.red;
        picture.green_mask = layout.green;
        picture.blue_mask = layout.blue;
        ASSERT_TRUE(XInitImage(&picture)) << layout.name;
        EXPECT_EQ(imageFromX(picture).rgb, layout.expected) << layout.name;
    }
}

TEST(Colour, IsThatOfTheModule) {
    Picture picture;
    picture.width = 4;
    picture.height = 2;
    picture.yLineSize = 4;
    picture.uvLineSize = 2;
    picture.y = {0, 64, 128, 255, 20, 84, 148, 235};
    picture.u = {100, 200};
    picture.v = {160, 90};
    Bytes rgba(32);
    convertToRgba(picture, rgba.data());
    for (std::size_t i = 0; i < 8; ++i) {
        const std::size_t chroma = i % 4 / 2;
        const double y = picture.y[i] / 255.0;
        const double u = picture.u[chroma] / 255.0 - 0.5;
        const double v = picture.v[chroma] / 255.0 - 0.5;
        const double rgb[] = {y + 1.13983 * v, y - 0.39465 * u - 0.58060 * v, y + 2.03211 * u};
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_EQ(rgba[4 * i + c], std::lround(std::clamp(rgb[c], 0.0, 1.0) * 255)) << i << ' ' << c;
        EXPECT_EQ(rgba[4 * i + 3], 255);
    }
}

}  // namespace
}  // namespace zetplay
