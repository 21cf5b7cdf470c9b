#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "readpng.h"
#include "source.h"
#include "testmedia.h"

namespace zetplay::test {
namespace {

struct Result {
    int status;
    std::string out;
    std::string err;
};

std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

/// Luma and chroma of the four quarters of a full-range picture, from the top left one row by row.
constexpr int quarters[4][3] = {{90, 110, 190}, {140, 70, 60}, {60, 210, 120}, {200, 50, 150}};

/// Red, green and blue, 0 to 255, that the module makes of a quarter; none of them is out of range.
std::array<double, 3> shownColour(int quarter) {
    const auto [y, cb, cr] = quarters[quarter];
    const double u = cb - 127.5;
    const double v = cr - 127.5;
    return {y + 1.13983 * v, y - 0.39465 * u - 0.58060 * v, y + 2.03211 * u};
}

std::string quarteredVideo(int width, int height, int frames) {
    std::string picture;
    for (int plane = 0; plane < 3; ++plane) {
        const int w = plane == 0 ? width : width / 2;
        const int h = plane == 0 ? height : height / 2;
        for (int i = 0; i < w * h; ++i)
            picture += static_cast<char>(quarters[2 * (i / w * 2 / h) + i % w * 2 / w][plane]);
    }
    std::string file =
        "YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + " F25:1 C420jpeg XCOLORRANGE=FULL\n";
    for (int i = 0; i < frames; ++i) file += "FRAME\n" + picture;
    return file;
}

class Zetplay : public testing::Test {
protected:
    /// Runs the program in the scratch directory, behind the command `prefix` and with `input` on standard input.
    Result run(const std::string& arguments, const std::string& prefix = {}, const std::string& input = {}) const {
        _scratch.write("in", input);
        const std::string command =
            "cd " + _scratch.path("") + " && timeout 60 " + prefix + " " ZETPLAY " " + arguments + " <in >out 2>err";
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), contents(_scratch.path("out")), contents(_scratch.path("err"))};
    }

    /// The pixel at shares of the picture is the colour of a quarter.
    static void expectQuarter(const Image& image, double x, double y, int quarter) {
        const auto rgb = shownColour(quarter);
        const std::uint8_t* pixel =
            image.row(static_cast<int>(y * image.height)) + 3 * static_cast<std::size_t>(x * image.width);
        // 2: half precision in the shader's arithmetic.
        for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], rgb[static_cast<std::size_t>(c)], 2) << x << ", " << y;
    }

    ScratchDirectory _scratch;
};

TEST_F(Zetplay, TellsWhatIsWrongInOneLine) {
    const std::string video = quarteredVideo(32, 16, 3);
    _scratch.write("good.y4m", video);
    _scratch.write("empty.mp4", "");
    _scratch.write("text.mp4", "this is no video\n");
    _scratch.write("cut.y4m", video.substr(0, video.size() - 100));
    _scratch.write("wrong.txt", "frame\nframe two\n");
    _scratch.write("much.txt", "frame 9\n");
    _scratch.write("good.txt", "frame\n");
    const struct {
        const char* arguments;
        const char* prefix;
        int status;
        const char* line;  // an extended regular expression for the whole of standard error
    } cases[] = {
        {"--headless good.y4m", "", 0, ""},
        {"--headless good.y4m --script good.txt", "", 0, ""},
        {"--headless good.y4m --font no.ttf", "", 0, "zetplay: no\\.ttf: no such font: labels [^\n]* left out\n"},
        {"--headless missing.mp4", "", 1, "zetplay: missing\\.mp4: [^\n]*No such file[^\n]*\n"},
        {"--headless empty.mp4", "", 1, "zetplay: empty\\.mp4: [^\n]+\n"},
        {"--headless text.mp4", "", 1, "zetplay: text\\.mp4: [^\n]+\n"},
        {"--headless .", "", 1, "zetplay: \\.: [^\n]+\n"},
        {"--headless cut.y4m", "", 1, "zetplay: cut\\.y4m: [^\n]+\n"},
        {"--headless good.y4m", "env DISPLAY=:4711", 1, "zetplay: cannot open X display :4711\n"},
        {"--headless good.y4m", "env -u DISPLAY", 1, "zetplay: no X display: DISPLAY is not set\n"},
        {"--headless good.y4m --view 11", "", 2, "zetplay: --view: '11' is not a view[^\n]*\n"},
        {"--headless good.y4m --view", "", 2, "zetplay: [^\n]*--view[^\n]*\n"},
        {"--headless good.y4m --script wrong.txt", "", 2,
         "zetplay: wrong\\.txt:2: frame: 'two' is not a count of frames\n"},
        {"--headless good.y4m --script none.txt", "", 1, "zetplay: none\\.txt: No such file or directory\n"},
        {"--headless good.y4m --script much.txt", "", 1,
         "zetplay: much\\.txt:1: frame: the input ends after 3 frames\n"},
        {"--headless good.y4m --shot no/where.png", "", 1, "zetplay: no/where\\.png: No such file or directory\n"},
        {"--headless good.y4m --record no/where.mp4", "", 1, "zetplay: no/where\\.mp4: No such file or directory\n"},
        {"--headless good.y4m --record /dev/full", "", 1, "zetplay: /dev/full: No space left on device\n"},
        {"--headless good.y4m --gallery good.y4m/all", "", 1, "zetplay: good\\.y4m/all: Not a directory\n"},
        {"--headless good.y4m --gallery all --record all.mp4", "", 2, "zetplay: [^\n]*--gallery[^\n]*\n"},
        {"--headless good.y4m --meta wrong.txt", "", 1, "zetplay: wrong\\.txt: parse error at line 1[^\n]*\n"},
        {"--headless good.y4m --lens auto", "", 1, "zetplay: good\\.y4m: no lens circle found\n"},
        {"--headless good.y4m --loop", "timeout --preserve-status -s INT 1", 130, ""},
    };
    for (const auto& test : cases) {
        const Result result = run(test.arguments, test.prefix);
        EXPECT_EQ(result.status, test.status) << test.arguments << '\n' << result.err;
        EXPECT_THAT(result.err, testing::MatchesRegex(test.line)) << test.arguments;
        EXPECT_EQ(result.out, "") << test.arguments;
    }
}

TEST_F(Zetplay, ReadsCommandsFromStandardInput) {
    _scratch.write("good.y4m", quarteredVideo(32, 16, 3));
    const auto piped = [&](const std::string& commands) { return run("--headless good.y4m --script -", {}, commands); };
    EXPECT_EQ(piped("frame\nscale 2\nread-scale\nrender-mode 77\nread-scale").out,
              "scale 2.000000\nscale unanswered\n");
    const Result wrong = piped("scale 3\nread-scale\n\nhop\nread-scale\n");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.out, "scale 3.000000\n");
    EXPECT_EQ(wrong.err, "zetplay: standard input:4: 'hop' is no command\n");
}

TEST_F(Zetplay, ShowsThePictureUprightInItsColours) {
    _scratch.write("good.y4m", quarteredVideo(64, 32, 2));
    const struct {
        const char* arguments;
        int width, height;
        double left, top;  // where the picture begins, as a share of the window
    } cases[] = {
        {"--headless --size 320x160", 320, 160, 0, 0},
        {"--headless --size 300x300", 300, 300, 0, 0.25},
        {"--size 400x100", 400, 100, 0.25, 0},
    };
    for (const auto& window : cases) {
        SCOPED_TRACE(window.arguments);
        const Result result = run(std::string(window.arguments) + " good.y4m --shot shot.png --stats");
        ASSERT_EQ(result.status, 0) << result.err;
        EXPECT_THAT(result.out,
                    testing::MatchesRegex(
                        R"(\{"frames_read": 2, "frames_set": 2, "wall_seconds": [0-9.]+, "cpu_seconds": [0-9.]+, )"
                        R"("peak_resident_bytes": [0-9]+\})"
                        "\n"));
        const Image shot = readPng(_scratch.path("shot.png"));
        ASSERT_EQ(shot.width, window.width);
        ASSERT_EQ(shot.height, window.height);
        const auto at = [](double begin, double share) { return begin + share * (1 - 2 * begin); };
        for (int quarter = 0; quarter < 4; ++quarter)
            for (const double near : {0.05, 0.45})
                expectQuarter(shot, at(window.left, quarter % 2 ? 1 - near : near),
                              at(window.top, quarter / 2 ? 1 - near : near), quarter);
    }
}

TEST_F(Zetplay, MetadataReachTheFrames) {
    _scratch.write("good.y4m", quarteredVideo(64, 32, 2));
    _scratch.write("meta.json", R"({"frames": {"1": {"rects": [[32, 0, 32, 16]]}}})");
    // The second frame is zoomed to its top right quarter; the inset covers a corner at most.
    for (const auto& [frames, zoomed] : {std::pair{"1", false}, {"2", true}}) {
        const Result result =
            run("--headless --size 320x160 good.y4m --meta meta.json --rect-zoom --shot shot.png "
                "--frames " +
                std::string(frames));
        ASSERT_EQ(result.status, 0) << result.err;
        const Image shot = readPng(_scratch.path("shot.png"));
        expectQuarter(shot, 0.25, 0.25, zoomed ? 1 : 0);
        expectQuarter(shot, 0.45, 0.45, zoomed ? 1 : 0);
    }
}

TEST_F(Zetplay, FindsTheLensCircleAndUsesIt) {
    _scratch.write("settle.txt", "frame\nsettle\n");
    const auto play = [&](const std::string& lens) {
        const Result result =
            run("--headless --size 160x120 --synthetic 640x480 --script settle.txt --stats --shot shot.png " + lens);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_THAT(result.out, testing::StartsWith("{\"frames_read\": 1, ")) << lens;
        return std::pair{result.err, readPng(_scratch.path("shot.png")).rgb};
    };
    const auto [line, shot] = play("--lens auto");
    int lens[4] = {};
    ASSERT_EQ(std::sscanf(line.c_str(), "lens %d,%d,%d,%d\n", lens, lens + 1, lens + 2, lens + 3), 4) << line;
    // A circle of 240 pixels in the middle.
    const int expected[] = {5000, 5000, 3750, 5000};
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(lens[i], expected[i], 0.005 * expected[i]) << i;
    EXPECT_TRUE(shot == play("--lens " + line.substr(5, line.size() - 6)).second);
    EXPECT_FALSE(shot == play("--lens none").second);
}

TEST_F(Zetplay, SnapshotsAgreeWithTheWindow) {
    _scratch.write("good.y4m", quarteredVideo(64, 32, 3));
    _scratch.write("snap.txt",
                   "frame\nsettle\nrotation 180\nframe\n"
                   "snap view.png\nsnap view.rgba\nsnap post.png post\nsnap source.png source\n"
                   "snap small.png buffer=100\n");
    const Result result = run("--headless --size 200x100 good.y4m --script snap.txt");
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "snap 200 100\nsnap 200 100\nsnap 200 100\nsnap 64 32\nsnap refused\n");
    // The view is turned by 180 degrees, the frame itself is not.
    for (const auto& [file, turned] : {std::pair{"view.png", true}, {"post.png", true}, {"source.png", false}}) {
        SCOPED_TRACE(file);
        const Image image = readPng(_scratch.path(file));
        for (int quarter = 0; quarter < 4; ++quarter)
            expectQuarter(image, quarter % 2 ? 0.75 : 0.25, quarter / 2 ? 0.75 : 0.25, turned ? 3 - quarter : quarter);
    }
    const std::string raw = contents(_scratch.path("view.rgba"));
    ASSERT_EQ(raw.size(), 200u * 100 * 4);
    // As the module delivered it: the bottom row first.
    const Image view = readPng(_scratch.path("view.png"));
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(static_cast<std::uint8_t>(raw[c]), view.row(99)[c]);
}

/// Reads a recording to its end; its last picture shows the quarters.
int countPictures(const std::string& path, int width, int height, double period) {
    const auto source = openMedia(path);
    Picture picture;
    int count = 0;
    for (; source->next(picture); ++count) EXPECT_NEAR(picture.seconds, count * period, 1e-3) << count;
    EXPECT_EQ(picture.width, width);
    EXPECT_EQ(picture.height, height);
    for (int quarter = 0; quarter < 4; ++quarter) {
        const auto x = static_cast<std::size_t>(quarter % 2 ? width * 3 / 4 : width / 4);
        const auto y = static_cast<std::size_t>(quarter / 2 ? height * 3 / 4 : height / 4);
        const std::size_t luma = y * static_cast<std::size_t>(picture.yLineSize) + x;
        const std::size_t chroma = y / 2 * static_cast<std::size_t>(picture.uvLineSize) + x / 2;
        // ITU-R BT.601, full range. 4: what the codec loses.
        const auto [red, green, blue] = shownColour(quarter);
        const double expected = 0.299 * red + 0.587 * green + 0.114 * blue;
        EXPECT_NEAR(picture.y[luma], expected, 4) << quarter;
        EXPECT_NEAR(picture.u[chroma], 128 + (blue - expected) / 1.772, 4) << quarter;
        EXPECT_NEAR(picture.v[chroma], 128 + (red - expected) / 1.402, 4) << quarter;
    }
    return count;
}

TEST_F(Zetplay, RecordsEachFrameOnceAtItsTime) {
    _scratch.write("good.y4m", quarteredVideo(64, 32, 9));
    _scratch.write("resize.txt", "frame 4\nresize 400 200\nframe 3\nresize 100 50\nframe\n");
    const struct {
        const char* arguments;
        const char* prefix;
        int status;
        int least, most;  // pictures
    } cases[] = {
        {"--size 320x160", "", 0, 9, 9},
        {"--size 321x161", "", 0, 9, 9},
        {"--size 320x160 --frames 5", "", 0, 5, 5},
        {"--size 320x160 --script resize.txt", "", 0, 8, 8},
        {"--size 320x160 --loop", "timeout --preserve-status -s INT 2", 130, 10, 2000},
    };
    for (const auto& recording : cases) {
        SCOPED_TRACE(recording.arguments);
        const Result result =
            run("--headless good.y4m --record r.mp4 " + std::string(recording.arguments), recording.prefix);
        ASSERT_EQ(result.status, recording.status) << result.err;
        EXPECT_EQ(result.err, "") << "standard error is no terminal";
        const int count = countPictures(_scratch.path("r.mp4"), 320, 160, 0.04);
        EXPECT_GE(count, recording.least);
        EXPECT_LE(count, recording.most);
    }
}

}  // namespace
}  // namespace zetplay::test
