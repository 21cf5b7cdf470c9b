#include "media/mediasource.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "media/frameconverter.h"
#include "testmedia.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace zetplay::test {
namespace {

/// Random samples of a 4:2:0 picture.
std::string noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    std::string picture(static_cast<std::size_t>(width * height + 2 * ((width + 1) / 2 * ((height + 1) / 2))), ' ');
    for (char& sample : picture) sample = static_cast<char>(random());
    return picture;
}

/// Samples of more than 8 bits.
std::string words(int count, int sample) {
    std::string samples;
    for (int i = 0; i < count; ++i) samples += {static_cast<char>(sample & 0xff), static_cast<char>(sample >> 8)};
    return samples;
}

/// The top left of a plane whose rows have `across` samples; the padding repeats the last one of its row.
std::vector<std::uint8_t> padded(const char* plane, int across, int width, int height, int lineSize) {
    std::vector<std::uint8_t> samples;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < lineSize; ++x)
            samples.push_back(static_cast<std::uint8_t>(plane[y * across + std::min(x, width - 1)]));
    return samples;
}

TEST(MediaSource, fullRangePassesSampleForSampleTimeAfterTime) {
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
        for (const std::size_t count : {3u, 2u, 3u}) {
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

FrameHandle frameOf(AVPixelFormat format, int width, int height, int align) {
    FrameHandle frame(av_frame_alloc());
    frame->format = format;
    frame->width = width;
    frame->height = height;
    if (av_frame_get_buffer(frame.get(), align) < 0) throw std::bad_alloc();
    for (int plane = 0; plane < 3 && frame->data[plane]; ++plane)
        std::memset(frame->data[plane], 100 + plane, static_cast<std::size_t>(frame->linesize[plane]));
    return frame;
}

TEST(FrameConverter, handsOnPlanesWithoutPaddingAndCopiesOthers) {
    const struct {
        const char* name;
        AVPixelFormat format;
        int width, height, align, quarterTurns;
        bool handedOn;
    } cases[] = {
        {"plain", AV_PIX_FMT_YUV420P, 64, 32, 32, 0, true},
        {"full range by its format", AV_PIX_FMT_YUVJ420P, 64, 32, 32, 0, true},
        {"a row too many", AV_PIX_FMT_YUV420P, 64, 33, 32, 0, true},
        {"padded lines", AV_PIX_FMT_YUV420P, 64, 32, 128, 0, false},
        {"a column too many", AV_PIX_FMT_YUV420P, 65, 32, 1, 0, false},
        {"upside down", AV_PIX_FMT_YUV420P, 64, 32, 32, 2, false},
        {"another format", AV_PIX_FMT_YUV422P, 64, 32, 32, 0, false},
    };
    for (const auto& [name, format, width, height, align, quarterTurns, handedOn] : cases) {
        SCOPED_TRACE(name);
        Picture picture;
        const FrameHandle frame = frameOf(format, width, height, align);
        const std::array<const std::uint8_t*, 3> planes{frame->data[0], frame->data[1], frame->data[2]};
        const FrameHandle other(av_frame_clone(frame.get()));  // keeps the memory from being used again
        FrameConverter(quarterTurns).convert(*frame, picture);
        EXPECT_EQ((std::array{picture.y, picture.u, picture.v} == planes), handedOn);
        EXPECT_EQ((std::array{picture.width, picture.height, picture.yLineSize, picture.uvLineSize}),
                  (std::array{64, 32, 64, 32}));
        EXPECT_EQ(picture.y[quarterTurns == 2 ? 64 * 32 - 1 : 0], 100);
    }
}

TEST(FrameConverter, saysHowColoursAreCoded) {
    const struct {
        AVPixelFormat format;
        int height;
        AVColorSpace matrix;
        AVColorRange range;
        int expectedMatrix;
        bool fullRange;
    } cases[] = {
        {AV_PIX_FMT_YUV420P, 718, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 6, false},
        {AV_PIX_FMT_YUV420P, 720, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 1, false},
        {AV_PIX_FMT_YUV420P, 720, AVCOL_SPC_SMPTE170M, AVCOL_RANGE_JPEG, 6, true},
        {AV_PIX_FMT_YUV420P, 32, AVCOL_SPC_BT2020_NCL, AVCOL_RANGE_MPEG, 9, false},
        {AV_PIX_FMT_YUV420P, 32, AVCOL_SPC_YCGCO, AVCOL_RANGE_MPEG, 6, false},
        {AV_PIX_FMT_YUVJ422P, 32, AVCOL_SPC_BT470BG, AVCOL_RANGE_UNSPECIFIED, 5, true},
        {AV_PIX_FMT_YUV444P10, 720, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, 1, false},
        {AV_PIX_FMT_GRAY8, 32, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_UNSPECIFIED, 6, true},
        {AV_PIX_FMT_GRAY8, 32, AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG, 6, false},
        {AV_PIX_FMT_RGB24, 720, AVCOL_SPC_RGB, AVCOL_RANGE_JPEG, 6, true},
        {AV_PIX_FMT_GBRP, 720, AVCOL_SPC_RGB, AVCOL_RANGE_UNSPECIFIED, 6, true},
    };
    for (const auto& [format, height, matrix, range, expectedMatrix, fullRange] : cases) {
        const FrameHandle frame = frameOf(format, 32, height, 0);
        frame->colorspace = matrix;
        frame->color_range = range;
        Picture picture;
        FrameConverter(0).convert(*frame, picture);
        EXPECT_EQ((std::pair{picture.color.matrix, picture.color.fullRange != 0}),
                  (std::pair{expectedMatrix, fullRange}))
            << av_get_pix_fmt_name(format) << ' ' << height;
    }
}

TEST(MediaSource, readsOtherFormatsAsTheyAreCoded) {
    const ScratchDirectory scratch;
    // Grey and colour at the ends of the limited range stay there; red of RGB comes as full-range BT.601.
    const struct {
        const char* name;
        std::string content;
        std::array<int, 3> samples;
        bool fullRange;
        bool still;
    } cases[] = {
        {"444.y4m",
         y4m(4, 2, "C444", std::vector(2, std::string(8, '\x10') + std::string(8, '\x50') + std::string(8, '\xf0'))),
         {16, 80, 240},
         false,
         false},
        {"10bit.y4m",
         y4m(4, 2, "C420p10", std::vector(2, words(8, 64) + words(2, 320) + words(2, 960))),
         {16, 80, 240},
         false,
         false},
        {"grey.y4m",
         y4m(4, 2, "Cmono XCOLORRANGE=LIMITED", std::vector(2, std::string(8, '\xeb'))),
         {235, 128, 128},
         false,
         false},
        {"a%d:b.pgm", "P5 4 2 255\n" + std::string(8, '\x9'), {9, 128, 128}, true, true},
        {"red.ppm", "P6 2 2 255\n" + std::string("\xff\0\0\xff\0\0\xff\0\0\xff\0\0", 12), {76, 85, 255}, true, true},
    };
    for (const auto& [name, content, samples, fullRange, still] : cases) {
        SCOPED_TRACE(name);
        const std::string path = scratch.write(name, content);
        EXPECT_EQ(openMedia(path)->still(), still);
        const auto pictures = picturesOf(path);
        ASSERT_EQ(pictures.size(), still ? 1u : 2u);
        const Picture& picture = pictures.back();
        EXPECT_EQ(picture.color.fullRange != 0, fullRange);
        EXPECT_NEAR(picture.y[0], samples[0], 1);
        EXPECT_NEAR(picture.u[0], samples[1], 1);
        EXPECT_NEAR(picture.v[0], samples[2], 1);
    }
}

TEST(MediaSource, givesWhatAnInputHoldsAndNamesWhatIsWrong) {
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
