#include "mediasource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "testmedia.h"

namespace zetplay::test {
namespace {

/// Random samples of a 4:2:0 picture.
std::string noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    std::string picture(static_cast<std::size_t>(width * height + 2 * ((width + 1) / 2 * ((height + 1) / 2))), ' ');
    for (char& sample : picture) sample = static_cast<char>(random());
    return picture;
}

/// The top left of a plane whose rows have `across` samples; the padding repeats the last one of its row.
std::vector<std::uint8_t> padded(const char* plane, int across, int width, int height, int lineSize) {
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < lineSize; ++x)
            samples.push_back(static_cast<std::uint8_t>(plane[y * across + std::min(x, width - 1)]));
    return samples;
}

TEST(MediaSource, FullRangePassesSampleForSampleTimeAfterTime) {
    const ScratchDirectory scratch;
    for (const auto& [width, height, line] : {std::array{2, 2, 4}, {6, 4, 8}, {7, 5, 8}, {1030, 34, 1032}}) {
        SCOPED_TRACE(width);
        const std::vector pictures{noise(width, height, 1), noise(width, height, 2), noise(width, height, 3)};
        const auto source = openMedia(scratch.write("clip.y4m", y4m(width, height, fullRange, pictures)));
        EXPECT_DOUBLE_EQ(source->frameRate(), 25);
        const int w = width / 2;
        const int h = height / 2;
        const int half = (width + 1) / 2;
        Picture picture;
        // To the end, up to the last picture, and to the end again.
        for (const std::size_t count : {3, 2, 3}) {
            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_TRUE(source->next(picture));
                EXPECT_EQ(picture.number, static_cast<std::int64_t>(i));
                EXPECT_NEAR(picture.seconds, 0.04 * static_cast<double>(i), 1e-9);
                EXPECT_EQ((std::array{picture.width, picture.height, picture.yLineSize, picture.uvLineSize}),
                          (std::array{2 * w, 2 * h, line, line / 2}));
                const char* const u = pictures[i].data() + width * height;
                const char* const v = u + half * ((height + 1) / 2);
                std::vector<std::uint8_t> expected = padded(pictures[i].data(), width, 2 * w, 2 * h, line);
                for (const char* plane : {u, v})
                    for (const std::uint8_t sample : padded(plane, half, w, h, line / 2)) expected.push_back(sample);
                EXPECT_TRUE(samplesOf(picture) == expected);
            }
            EXPECT_EQ(source->next(picture), count == 2);
            source->rewind();
        }
    }
}

using Colour = std::array<double, 3>;

/// R'G'B' of 0 to 1 as 8-bit Y'CbCr, by the definition in ITU-R BT.601.
Colour toYuv(const Colour& rgb, bool fullRange) {
    const double y = 0.299 * rgb[0] + 0.587 * rgb[1] + 0.114 * rgb[2];
    const double cb = (rgb[2] - y) / 1.772;
    const double cr = (rgb[0] - y) / 1.402;
    if (fullRange) return {255 * y, std::min(128 + 255 * cb, 255.0), std::min(128 + 255 * cr, 255.0)};
    return {16 + 219 * y, 128 + 224 * cb, 128 + 224 * cr};
}

/// The whole picture has this colour.
void expectColour(const Picture& picture, const Colour& rgb) {
    const Colour expected = toYuv(rgb, true);
    EXPECT_NEAR(picture.y.front(), expected[0], 2);
    EXPECT_NEAR(picture.u.front(), expected[1], 2);
    EXPECT_NEAR(picture.v.front(), expected[2], 2);
}

TEST(MediaSource, ConvertsColoursToFullRange420) {
    const ScratchDirectory scratch;
    const Colour colours[] = {{0, 0, 0}, {1, 1, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.2, 0.6, 0.9}};
    for (const std::string form : {"C420jpeg", "C420jpeg XCOLORRANGE=LIMITED", "C444", "C444 XCOLORRANGE=FULL"}) {
        SCOPED_TRACE(form);
        std::vector<std::string> pictures(std::size(colours));
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            const Colour yuv = toYuv(colours[i], form.ends_with("FULL"));
            for (std::size_t plane = 0; plane < 3; ++plane)
                pictures[i].append(plane > 0 && form.starts_with("C420") ? 256 : 1024,
                                   static_cast<char>(std::lround(yuv[plane])));
        }
        const auto read = picturesOf(scratch.write("a.y4m", y4m(32, 32, form, pictures)));
        ASSERT_EQ(read.size(), pictures.size());
        for (std::size_t i = 0; i < read.size(); ++i) expectColour(read[i], colours[i]);
    }
}

TEST(MediaSource, ReadsAPictureFileAsAFullRangeStill) {
    const ScratchDirectory scratch;
    const std::string path = scratch.write("a%d:b.pgm", "P5 4 2 255\n" + std::string(8, '\x9'));
    EXPECT_TRUE(openMedia(path)->still());
    ASSERT_EQ(picturesOf(path).size(), 1u);
    expectColour(picturesOf(path)[0], {9 / 255.0, 9 / 255.0, 9 / 255.0});
}

TEST(MediaSource, GivesWhatAnInputHoldsAndNamesWhatIsWrong) {
    const ScratchDirectory scratch;
    const std::vector pictures{noise(64, 64, 1), noise(64, 64, 2), noise(64, 64, 3), noise(64, 64, 4)};
    const std::string whole = scratch.write("whole.y4m", y4m(64, 64, "C420jpeg", pictures));
    const auto cut = [&](const std::string& name) {
        if (name.ends_with(".y4m")) std::filesystem::copy_file(whole, scratch.path(name));
        if (!name.ends_with(".y4m")) repack(whole, scratch.path(name));
        std::filesystem::resize_file(scratch.path(name), std::filesystem::file_size(scratch.path(name)) * 6 / 10);
        return scratch.path(name);
    };
    std::filesystem::create_directory(scratch.path("directory.mp4"));
    const struct {
        std::string path;
        const char* cause;
        int pictures;
    } cases[] = {
        {scratch.path("missing.mp4"), "No such file", 0},
        {scratch.path("directory.mp4"), "directory", 0},
        {scratch.write("empty.png", ""), "empty", 0},
        {scratch.write("words.mp4", "these are words and no video"), "no format", 0},
        {scratch.write("narrow.y4m", y4m(1, 8, fullRange, {std::string(16, ' '), std::string(16, ' ')})), "1x8", 0},
        {cut("cut.y4m"), "cut short", 2},
        {cut("cut.mkv"), "cut short", 2},
        {cut("cut.avi"), "cut short", 2},
    };
    for (const auto& [path, cause, count] : cases) {
        int given = 0;
        try {
            const auto source = openMedia(path);
            for (Picture picture; source->next(picture);) ++given;
            ADD_FAILURE() << path << " has passed";
        } catch (const Failure& failure) {
            const std::string line = failure.what();
            EXPECT_TRUE(line.starts_with(path + ": ")) << line;
            EXPECT_NE(line.find(cause), line.npos) << line;
            EXPECT_EQ(line.find('\n'), line.npos) << line;
        }
        EXPECT_EQ(given, count) << path;
    }
}

}  // namespace
}  // namespace zetplay::test
