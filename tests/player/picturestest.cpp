#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Behind the test framework, whose names its macros would break.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "colour.h"
#include "grab.h"
#include "pngfile.h"
#include "readpng.h"
#include "testmedia.h"

namespace zetplay {
namespace {

using test::ScratchDirectory;
using Bytes = std::vector<std::uint8_t>;

/// 3 by 2 pixels that tell left from right, top from bottom and each channel from the others.
Image sample() {
    Image image(3, 2);
    for (std::size_t i = 0; i < image.rgb.size(); ++i) image.rgb[i] = static_cast<std::uint8_t>(7 + 11 * i);
    return image;
}

TEST(Png, KeepsEveryPixelUpright) {
    const ScratchDirectory scratch;
    const Image image = sample();
    writePng(scratch.path("a.png"), image);
    const Image read = test::readPng(scratch.path("a.png"));
    EXPECT_EQ(read.width, 3);
    EXPECT_EQ(read.height, 2);
    EXPECT_EQ(read.rgb, image.rgb);
}

TEST(Png, TellsFileAndCause) {
    const struct {
        const char* path;
        const char* cause;
    } cases[] = {{"/nowhere/a.png", "No such file"}, {"/", "Is a directory"}, {"/dev/full", "No space left"}};
    for (const auto& place : cases) {
        try {
            writePng(place.path, sample());
            ADD_FAILURE() << place.path;
        } catch (const Failure& failure) {
            EXPECT_EQ(std::string(failure.what()).find(std::string(place.path) + ": "), 0u) << failure.what();
            EXPECT_NE(std::string(failure.what()).find(place.cause), std::string::npos) << failure.what();
        }
    }
}

TEST(Image, TurnsTheRowsThatOpenGlReadsFirst) {
    const Bytes rgba = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 10, 11, 12, 0};
    EXPECT_EQ(imageFromRgba(rgba, 2, 2, true).rgb, (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(imageFromRgba(rgba, 2, 2, false).rgb, (Bytes{7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6}));
}

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
