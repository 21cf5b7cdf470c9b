#include "mediasource.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <numeric>
#include <random>

#include "source.h"
#include "testmedia.h"

namespace zetplay::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

/// Uncompressed video with random samples; `planes` receives those of each picture.
std::string y4m(int width, int height, const std::string& tags, int count, std::vector<Planes>& planes) {
    std::mt19937 random(static_cast<unsigned>(width * 1000 + height));
    std::string file = "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + " F10:1 " + tags + "\n";
    const std::size_t chroma = static_cast<std::size_t>((width + 1) / 2 * ((height + 1) / 2));
    for (int i = 0; i < count; ++i) {
        file += "FRAME\n";
        planes.push_back({Bytes(static_cast<std::size_t>(width * height)), Bytes(chroma), Bytes(chroma)});
        for (Bytes& plane : planes.back()) {
            for (std::uint8_t& sample : plane) sample = static_cast<std::uint8_t>(random());
            file += text(plane);
        }
    }
    return file;
}

void expectPlane(const Bytes& plane, int lineSize, int width, int height, const Bytes& source, int sourceWidth) {
    ASSERT_EQ(plane.size(), static_cast<std::size_t>(lineSize * height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < lineSize; ++x) {
            ASSERT_EQ(plane[static_cast<std::size_t>(y * lineSize + x)],
                      source[static_cast<std::size_t>(y * sourceWidth + std::min(x, width - 1))])
                << "at " << x << ", " << y;
        }
    }
}

TEST(MediaSource, FullRangePassesSampleForSample) {
    const ScratchDirectory scratch;
    const struct {
        int width, height, yLineSize;
    } sizes[] = {{2, 2, 4}, {6, 4, 8}, {7, 5, 8}, {16, 8, 16}, {1030, 34, 1032}};
    for (const auto& size : sizes) {
        SCOPED_TRACE(size.width);
        std::vector<Planes> made;
        const auto source =
            openMedia(scratch.write("a.y4m", y4m(size.width, size.height, "C420jpeg XCOLORRANGE=FULL", 2, made)));
        Picture picture;
        for (const Planes& planes : made) {
            ASSERT_TRUE(source->next(picture));
            EXPECT_EQ(picture.width, size.width & ~1);
            EXPECT_EQ(picture.height, size.height & ~1);
            EXPECT_EQ(picture.yLineSize, size.yLineSize);
            EXPECT_EQ(picture.uvLineSize, size.yLineSize / 2);
            const int across = (size.width + 1) / 2;
            expectPlane(picture.y, picture.yLineSize, picture.width, picture.height, planes[0], size.width);
            expectPlane(picture.u, picture.uvLineSize, picture.width / 2, picture.height / 2, planes[1], across);
            expectPlane(picture.v, picture.uvLineSize, picture.width / 2, picture.height / 2, planes[2], across);
        }
        EXPECT_FALSE(source->next(picture));
    }
}

using Colour = std::array<double, 3>;

/// Kr and Kb of ITU-R BT.601, BT.709.
constexpr std::array<double, 2> BT601{0.299, 0.114};
constexpr std::array<double, 2> BT709{0.2126, 0.0722};

/// R'G'B' of 0 to 1 as 8-bit Y'CbCr, by the definition in ITU-R BT.601 and BT.709.
Colour toYuv(const Colour& rgb, const std::array<double, 2>& k, bool fullRange) {
    const double y = k[0] * rgb[0] + (1 - k[0] - k[1]) * rgb[1] + k[1] * rgb[2];
    const double cb = (rgb[2] - y) / (2 * (1 - k[1]));
    const double cr = (rgb[0] - y) / (2 * (1 - k[0]));
    if (fullRange) return {255 * y, std::min(128 + 255 * cb, 255.0), std::min(128 + 255 * cr, 255.0)};
    return {16 + 219 * y, 128 + 224 * cb, 128 + 224 * cr};
}

std::uint8_t byte(double value) {
    return static_cast<std::uint8_t>(std::lround(value));
}

/// One flat picture of 32x32 in the form under test.
Planes flat(const Video& form, const Colour& yuv) {
    const std::size_t chroma = form.format == AV_PIX_FMT_YUV444P ? 32 * 32 : 16 * 16;
    return {Bytes(32 * 32, byte(yuv[0])), Bytes(chroma, byte(yuv[1])), Bytes(chroma, byte(yuv[2]))};
}

TEST(MediaSource, ConvertsColoursToFullRangeBt601) {
    const ScratchDirectory scratch;
    const struct {
        const char* name;
        AVPixelFormat format;
        AVColorSpace matrix;
        AVColorRange range;
    } forms[] = {
        {"limited, matrix not told", AV_PIX_FMT_YUV420P, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG},
        {"nothing told", AV_PIX_FMT_YUV420P, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED},
        {"limited BT.709", AV_PIX_FMT_YUV420P, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG},
        {"full BT.709", AV_PIX_FMT_YUV420P, AVCOL_SPC_BT709, AVCOL_RANGE_JPEG},
        {"limited 4:4:4", AV_PIX_FMT_YUV444P, AVCOL_SPC_SMPTE170M, AVCOL_RANGE_MPEG},
        {"full 4:4:4", AV_PIX_FMT_YUV444P, AVCOL_SPC_BT470BG, AVCOL_RANGE_JPEG},
        {"limited 4:4:4 BT.709", AV_PIX_FMT_YUV444P, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG},
    };
    const Colour colours[] = {{0, 0, 0}, {1, 1, 1}, {0.5, 0.5, 0.5}, {1, 0, 0},      {0, 1, 0},
                              {0, 0, 1}, {1, 1, 0}, {0.2, 0.6, 0.9}, {0.8, 0.3, 0.1}};
    for (const auto& form : forms) {
        SCOPED_TRACE(form.name);
        const Video video{32, 32, form.format, form.matrix, form.range};
        std::vector<Planes> pictures;
        for (const Colour& rgb : colours) {
            pictures.push_back(flat(
                video, toYuv(rgb, form.matrix == AVCOL_SPC_BT709 ? BT709 : BT601, form.range == AVCOL_RANGE_JPEG)));
        }
        encode(video, pictures, scratch.path("a.mkv"));
        const auto source = openMedia(scratch.path("a.mkv"));
        Picture picture;
        for (const Colour& rgb : colours) {
            ASSERT_TRUE(source->next(picture));
            const Colour expected = toYuv(rgb, BT601, true);
            EXPECT_NEAR(picture.y[16 * 32 + 16], expected[0], 2) << picture.number;
            EXPECT_NEAR(picture.u[8 * 16 + 8], expected[1], 2) << picture.number;
            EXPECT_NEAR(picture.v[8 * 16 + 8], expected[2], 2) << picture.number;
        }
    }
}

TEST(MediaSource, ReadsPictureFilesAsFullRange) {
    const ScratchDirectory scratch;
    std::string colour = "P6 12 10 255\n";
    std::string grey = "P5 12 10 255\n";
    for (int i = 0; i < 120; ++i) {
        colour += text({200, 40, 250});
        grey += text({201});
    }
    const struct {
        std::string path;
        Colour rgb;
    } files[] = {{scratch.write("a%d:b.ppm", colour), {200 / 255.0, 40 / 255.0, 250 / 255.0}},
                 {scratch.write("grey.pgm", grey), {201 / 255.0, 201 / 255.0, 201 / 255.0}}};
    for (const auto& file : files) {
        SCOPED_TRACE(file.path);
        const auto source = openMedia(file.path);
        EXPECT_TRUE(source->still());
        Picture picture;
        ASSERT_TRUE(source->next(picture));
        const Colour expected = toYuv(file.rgb, BT601, true);
        EXPECT_NEAR(picture.y[5 * 12 + 6], expected[0], 2);
        EXPECT_NEAR(picture.u[2 * 8 + 3], expected[1], 2);
        EXPECT_NEAR(picture.v[2 * 8 + 3], expected[2], 2);
        EXPECT_FALSE(source->next(picture));
        source->rewind();
        EXPECT_TRUE(source->next(picture));
        EXPECT_EQ(picture.number, 0);
    }
}

TEST(MediaSource, CountsTimesAndStartsOver) {
    const ScratchDirectory scratch;
    std::vector<Planes> made;
    const auto source = openMedia(scratch.write("clip.y4m", y4m(8, 8, "C420jpeg XCOLORRANGE=FULL", 5, made)));
    EXPECT_FALSE(source->still());
    EXPECT_DOUBLE_EQ(source->frameRate(), 10);
    EXPECT_EQ(source->name(), "clip.y4m");
    Picture picture;
    for (int pass = 0; pass < 3; ++pass) {
        for (std::size_t i = 0; i < made.size() - (pass == 1 ? 2 : 0); ++i) {
            ASSERT_TRUE(source->next(picture));
            EXPECT_EQ(picture.number, static_cast<std::int64_t>(i));
            EXPECT_NEAR(picture.seconds, 0.1 * static_cast<double>(i), 1e-9);
            EXPECT_EQ(picture.y, made[i][0]);
        }
        EXPECT_EQ(source->next(picture), pass == 1);
        source->rewind();
    }
}

std::string wav() {
    std::string file("RIFF\x24\x10\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1f\0\0\x80\x3e\0\0\2\0\x10\0data\0\x10\0\0", 44);
    return file + std::string(4096, '\0');
}

TEST(MediaSource, NamesFileAndCauseOfARefusal) {
    const ScratchDirectory scratch;
    std::vector<Planes> ignored;
    std::filesystem::create_directory(scratch.path("directory.mp4"));
    const struct {
        std::string path;
        const char* cause;
    } cases[] = {
        {scratch.path("missing.mp4"), "No such file"},
        {scratch.path("directory.mp4"), "directory"},
        {scratch.write("empty.png", ""), "empty"},
        {scratch.write("words.mp4", "these are words and no video"), "no format"},
        {scratch.write("sound.wav", wav()), "only sound"},
        {scratch.write("cut.y4m", y4m(16, 16, "C420jpeg", 1, ignored).substr(0, 200)), "cut short"},
        {scratch.write("cut.bmp", std::string("BM\x36\x04\0\0\0\0\0\0\x36\0\0\0", 14)), "no picture can be decoded"},
    };
    for (const auto& failing : cases) {
        SCOPED_TRACE(failing.path);
        try {
            openMedia(failing.path);
            ADD_FAILURE() << "opened";
        } catch (const Failure& failure) {
            const std::string line = failure.what();
            EXPECT_NE(line.find(failing.path), std::string::npos) << line;
            EXPECT_NE(line.find(failing.cause), std::string::npos) << line;
            EXPECT_EQ(line.find('\n'), std::string::npos);
        }
    }
    const auto narrow = openMedia(scratch.write("narrow.y4m", y4m(1, 8, "C420jpeg", 2, ignored)));
    Picture picture;
    EXPECT_THROW(narrow->next(picture), Failure);
}

std::string cut(const std::string& path, double part) {
    std::filesystem::resize_file(
        path, static_cast<std::uintmax_t>(static_cast<double>(std::filesystem::file_size(path)) * part));
    return path;
}

TEST(MediaSource, GivesWhatADamagedInputHoldsThenFails) {
    const ScratchDirectory scratch;
    std::vector<Planes> made;
    const std::string raw = y4m(64, 64, "C420jpeg XCOLORRANGE=FULL", 4, made);
    const Video video{64, 64, AV_PIX_FMT_YUV420P};
    for (const char* name : {"a.mkv", "a.avi"}) encode(video, made, scratch.path(name));
    const struct {
        std::string path;
        int least;
        int most;
    } cases[] = {
        {cut(scratch.write("a.y4m", raw), 0.6), 2, 2},
        {cut(scratch.path("a.mkv"), 0.6), 2, 3},
        {cut(scratch.path("a.avi"), 0.6), 2, 3},
    };
    for (const auto& damaged : cases) {
        SCOPED_TRACE(damaged.path);
        const auto source = openMedia(damaged.path);
        EXPECT_FALSE(source->still());
        Picture picture;
        for (int pass = 0; pass < 2; ++pass) {
            int given = 0;
            EXPECT_THROW(
                {
                    while (source->next(picture)) ++given;
                },
                Failure);
            EXPECT_GE(given, damaged.least);
            EXPECT_LE(given, damaged.most);
            source->rewind();
        }
    }
}

}  // namespace
}  // namespace zetplay::test
