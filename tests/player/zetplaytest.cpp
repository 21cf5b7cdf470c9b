#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

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

class Zetplay : public testing::Test {
protected:
    /// Runs the program in the scratch directory, behind the command `prefix` and with `input` on standard input.
    Result run(const std::string& arguments, const std::string& prefix = {}, const std::string& input = {}) const {
        _scratch.write("in", input);
        const std::string command = "cd " + _scratch.path("") + " && timeout 60 " + prefix +
                                    " " ZETPLAY " --headless " + arguments + " <in >out 2>err";
        const int status = std::system(command.c_str());
        return {WEXITSTATUS(status), contents(_scratch.path("out")), contents(_scratch.path("err"))};
    }
    Image readImage(const std::string& name) const { return readPng(_scratch.path(name)); }

    /// The picture shows the four colours, turned by 180 degrees or not; to the half precision of the shader.
    static void expectQuarters(const Image& image, bool turned) {
        for (int quarter = 0; quarter < 4; ++quarter) {
            const int x = (quarter % 2 ? 3 : 1) * image.width / 4;
            const int y = (quarter / 2 ? 3 : 1) * image.height / 4;
            const auto rgb = shownColour(turned ? 3 - quarter : quarter);
            for (int c = 0; c < 3; ++c)
                EXPECT_NEAR(image.row(y)[3 * x + c], rgb[static_cast<std::size_t>(c)], 2) << quarter;
        }
    }

    ScratchDirectory _scratch;
    const std::string _video = quarteredVideo(64, 32, 9);
    const std::string _good = _scratch.write("good.y4m", _video);
};

TEST_F(Zetplay, tellsWhatIsWrongInOneLine) {
    _scratch.write("wrong.txt", "frame\nframe two\n");
    _scratch.write("much.txt", "frame 10\n");
    const struct {
        const char* arguments;
        const char* prefix;
        int status;
        const char* line;  // an extended regular expression for the whole of standard error
    } cases[] = {
        {"good.y4m --font no.ttf", "", 0, "zetplay: no\\.ttf: no such font: labels [^\n]* left out\n"},
        {"missing.mp4", "", 1, "zetplay: missing\\.mp4: [^\n]*No such file[^\n]*\n"},
        // In a window: without the --headless that comes first.
        {"good.y4m", "env DISPLAY=:4711 sh -c 'shift; exec \"$0\" \"$@\"'", 1,
         "zetplay: cannot open X display :4711\n"},
        {"good.y4m", "env -u DISPLAY sh -c 'shift; exec \"$0\" \"$@\"'", 1,
         "zetplay: no X display: DISPLAY is not set\n"},
        {"good.y4m --view 11", "", 2, "zetplay: --view: '11' is not a view[^\n]*\n"},
        {"--record ''", "", 2, "zetplay: --record is empty\n"},
        {"good.y4m --frame-color 709", "", 2,
         "zetplay: --frame-color: '709' is not auto, none or MATRIX,RANGE [^\n]*\n"},
        {"good.y4m --frames 0", "", 2, "zetplay: --frames: '0' is not a count of frames\n"},
        {"good.y4m --script wrong.txt", "", 2, "zetplay: wrong\\.txt:2: frame: 'two' is not a count of frames\n"},
        {"good.y4m --script much.txt", "", 1, "zetplay: much\\.txt:1: frame: the input ends after 9 frames\n"},
        {"good.y4m --shot no/where.png", "", 1, "zetplay: no/where\\.png: No such file or directory\n"},
        {"good.y4m --record /proc/r.mp4", "", 1, "zetplay: /proc/r\\.mp4: [^\n]+\n"},
        {"good.y4m --record /dev/full", "", 1, "zetplay: /dev/full: No space left on device\n"},
        {"good.y4m --gallery good.y4m/all", "", 1, "zetplay: good\\.y4m/all: Not a directory\n"},
        {"good.y4m --lens auto", "", 1, "zetplay: good\\.y4m: no lens circle found\n"},
    };
    for (const auto& test : cases) {
        const Result result = run(test.arguments, test.prefix);
        EXPECT_EQ(result.status, test.status) << test.arguments << '\n' << result.err;
        EXPECT_THAT(result.err, testing::MatchesRegex(test.line)) << test.arguments;
        EXPECT_EQ(result.out, "") << test.arguments;
    }
}

TEST_F(Zetplay, tellsWhatCannotBeWritten) {
    const std::string arguments = "good.y4m --frames 1 --verbose --shot shot.png";
    EXPECT_EQ(run(arguments, "env -u DISPLAY sh -c 'exec \"$@\" <&- >&- 2>&-' sh").status, 0)
        << "no descriptor is anybody else's";
    const std::string shot = contents(_scratch.path("shot.png"));
    EXPECT_EQ(shot.substr(1, 3), "PNG");
    // No file can be larger than a few kilobytes, as on a disk that fills up.
    const Result full =
        run("good.y4m --frames 1 --shot shot.png", "sh -c 'trap \"\" XFSZ; ulimit -f 4; exec \"$@\"' sh");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "zetplay: shot.png: File too large\n");
    EXPECT_EQ(contents(_scratch.path("shot.png")), shot) << "the old one stays";
    for (const char* output : {"/dev/full", "&-"}) {
        const auto prefix = "sh -c 'exec \"$@\" >" + std::string(output) + "' sh";
        const Result lost = run("good.y4m --frames 1 --stats", prefix);
        EXPECT_EQ(lost.status, 1) << output;
        EXPECT_THAT(lost.err, testing::MatchesRegex("zetplay: standard output: [^\n]+\n")) << output;
    }
    using Files = std::filesystem::directory_iterator;
    const auto files = std::distance(Files(_scratch.path("")), Files());
    EXPECT_EQ(files, 5) << "the input, three of the test's own, and the picture";
}

TEST_F(Zetplay, endsCleanlyWhereTheInputDoesNot) {
    const Pipe pipe(_scratch.path("pipe"), _video);
    // Killed if it doesn't end by itself.
    EXPECT_EQ(run("pipe --shot shot.png", "timeout --preserve-status -s INT -k 5 2").status, 130);
    expectQuarters(readImage("shot.png"), false);
}

TEST_F(Zetplay, doesEachCommandOfStandardInputAsItComes) {
    const Result result = run("good.y4m --stats --script -", {},
                              "frame 2\nscale 2\nread-scale\nrender-mode 77\nread-scale\nwindow none\nframe\nhop\n"
                              "read-scale\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "zetplay: standard input:8: 'hop' is no command\n");
    EXPECT_THAT(result.out,
                testing::MatchesRegex(
                    "scale 2.000000\nscale unanswered\n.\"frames_read\": 3, \"frames_set\": 3, \"frames_drawn\": 2, "
                    "\"wall_seconds\":"
                    " [0-9.]+, \"cpu_seconds\": [0-9.]+, \"peak_resident_bytes\": [0-9]+.\n"));
}

TEST_F(Zetplay, findsTheLensCircleAndUsesIt) {
    const auto play = [&](const std::string& lens) {
        const std::string told =
            run("--synthetic 640x480 --frames 1 --shot shot.png --view panorama --lens " + lens).err;
        return std::pair{told, readImage("shot.png").rgb};
    };
    const auto [told, shot] = play("auto");
    int x = 0, y = 0, radiusX = 0, radiusY = 0;
    ASSERT_EQ(std::sscanf(told.c_str(), "lens %d,%d,%d,%d\n", &x, &y, &radiusX, &radiusY), 4) << told;
    // A circle of 240 pixels in the middle.
    EXPECT_NEAR(std::hypot(x - 5000, y - 5000), 0, 25);
    EXPECT_NEAR(std::hypot(radiusX - 3750, radiusY - 5000), 0, 25);
    EXPECT_TRUE(shot == play(told.substr(5, told.size() - 6)).second);
    EXPECT_FALSE(shot == play("none").second);
}

TEST_F(Zetplay, snapshotsAgreeWithTheWindow) {
    _scratch.write("snap.txt",
                   "frame\nsettle\nrotation 180\nframe\nsnap view.png\nsnap view.rgba\nsnap post.png post\n"
                   "snap source.png source\nsnap small.png buffer=100\ngrab window.png\n");
    const Result result = run("--size 200x100 good.y4m --script snap.txt");
    EXPECT_EQ(result.out, "snap 200 100\nsnap 200 100\nsnap 200 100\nsnap 64 32\nsnap refused\n") << result.err;
    for (const char* file : {"view.png", "post.png", "window.png"}) expectQuarters(readImage(file), true);
    // What the module draws and what the player makes of the frame itself have the same colours.
    expectQuarters(readImage("source.png"), false);
    EXPECT_EQ(contents(_scratch.path("view.rgba")).size(), 200u * 100 * 4);
}

/// How colours of 0 to 1 are coded: weights of red and blue in luma, by ITU-T H.273, and the range.
struct Coding {
    double red, blue;
    bool fullRange;
    std::array<double, 3> toSamples(const std::array<double, 3>& rgb) const {
        const double luma = red * rgb[0] + (1 - red - blue) * rgb[1] + blue * rgb[2];
        const double u = (rgb[2] - luma) / (2 - 2 * blue);
        const double v = (rgb[0] - luma) / (2 - 2 * red);
        if (fullRange) return {255 * luma, 128 + 255 * u, 128 + 255 * v};
        return {16 + 219 * luma, 128 + 224 * u, 128 + 224 * v};
    }
};

constexpr std::array<double, 3> patches[12] = {{1, 0, 0},       {0, 1, 0},       {0, 0, 1},       {0, 1, 1},
                                               {1, 0, 1},       {1, 1, 0},       {0, 0, 0},       {1, 1, 1},
                                               {0.5, 0.5, 0.5}, {0.8, 0.5, 0.3}, {0.1, 0.3, 0.6}, {0.3, 0.6, 0.2}};

/// Four times three patches of 32x32 in three raw planes.
std::string patchPlanes(const Coding& coding) {
    std::string planes;
    for (const std::size_t plane : {0u, 1u, 2u})
        for (int side = plane == 0 ? 32 : 16, y = 0; y < 3 * side; ++y)
            for (int x = 0; x < 4 * side; ++x) {
                const double sample = coding.toSamples(patches[y / side * 4 + x / side])[plane];
                planes += static_cast<char>(std::lround(std::min(sample, 255.0)));
            }
    return planes;
}

TEST_F(Zetplay, showsColoursAsTheyWereCoded) {
    constexpr Coding limited709{0.2126, 0.0722, false}, full709{0.2126, 0.0722, true};
    constexpr Coding limited601{0.299, 0.114, false}, full601{0.299, 0.114, true}, full2020{0.2627, 0.0593, true};
    const struct {
        const char* name;
        Coding coding;
        const char* encoder;  // of FFmpeg
        const char* options = "";
    } cases[] = {
        {"a.mp4", limited709, "-c:v libx264 -qp 1 -colorspace bt709 -color_range tv"},
        {"b.mp4", full709, "-c:v libx264 -qp 1 -colorspace bt709 -color_range pc"},
        {"c.mp4", limited601, "-c:v libx264 -qp 1 -colorspace smpte170m -color_range tv"},
        {"d.mp4", full601, "-c:v libx264 -qp 1 -colorspace bt470bg -color_range pc"},
        {"e.jpg", full601, "-pix_fmt yuvj420p -q:v 1"},
        {"f.png", full601, "-pix_fmt rgb24"},
        {"g.y4m", limited601, ""},
        {"h.y4m", full2020, "", "--frame-color 2020,full"},
        {"i.mkv", limited709, "-c:v ffv1 -pix_fmt yuv420p10le -colorspace bt709 -color_range tv"},
    };
    for (const auto& [name, coding, encoder, options] : cases) {
        SCOPED_TRACE(name);
        _scratch.write("planes", patchPlanes(coding));
        const std::string range = coding.fullRange ? "pc" : "tv";
        const std::string command = "cd " + _scratch.path("") +
                                    " && ffmpeg -v error -f rawvideo -s 128x96 -color_range " + range +
                                    " -pix_fmt yuv420p -i planes " + encoder + " " + name;
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_EQ(run("--size 128x96 " + std::string(name) + " " + options + " --script -", {},
                      "frame\nsnap source.png source\ngrab window.png\n")
                      .status,
                  0);
        for (const char* file : {"window.png", "source.png"}) {
            const Image image = readImage(file);
            for (int patch = 0; patch < 12; ++patch)
                for (std::size_t c = 0; c < 3; ++c)
                    EXPECT_NEAR(image.row(patch / 4 * 32 + 16)[patch % 4 * 96 + 48 + static_cast<int>(c)],
                                255 * patches[patch][c], 4)
                        << file << ' ' << patch << ' ' << c;
        }
    }
}

TEST_F(Zetplay, leavesColoursToTheModuleWhereToldTo) {
    // What `zet::YUV420PData` promises, of samples far from grey.
    const std::string picture = std::string(64, '\x64') + std::string(16, '\x78') + std::string(16, '\x96');
    const std::array moduleDefault{100 + 1.13983 * 22.5, 100 + 0.39465 * 7.5 - 0.58060 * 22.5, 100 - 2.03211 * 7.5};
    const std::array full709{100 + 1.5748 * 22, 100 + 0.1873 * 8 - 0.4681 * 22, 100 - 1.8556 * 8};
    _scratch.write("a.y4m", y4m(8, 8, "C420jpeg", std::vector(4, picture)));
    const auto expectShown = [&](const char* file, const std::array<double, 3>& rgb) {
        for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(readImage(file).rgb[c], rgb[c], 2) << file << ' ' << c;
    };
    run("--size 64x64 a.y4m --frame-color none --script -", {},
        "frame\ngrab none.png\nframe-color 1,full\nframe\ngrab given.png\nframe-color none\nframe\ngrab again.png\n"
        "snap source.png source\n");
    for (const char* file : {"none.png", "again.png", "source.png"}) expectShown(file, moduleDefault);
    expectShown("given.png", full709);
}

/// A picture of 320x160 whose quarters have the colours that the window shows.
void expectRecorded(const Picture& picture) {
    ASSERT_EQ((std::array{picture.width, picture.height}), (std::array{320, 160}));
    EXPECT_EQ((std::pair{picture.color.matrix, picture.color.fullRange}), (std::pair{1, 0}));
    for (int quarter = 0; quarter < 4; ++quarter) {
        const auto at = static_cast<std::size_t>((quarter / 2 ? 60 : 20) * 160 + (quarter % 2 ? 120 : 40));
        const auto [red, green, blue] = shownColour(quarter);
        const auto expected = Coding{0.2126, 0.0722, false}.toSamples({red / 255, green / 255, blue / 255});
        // 4: loss of the codec.
        EXPECT_NEAR(picture.y[4 * (at / 160) * 160 + 2 * (at % 160)], expected[0], 4) << quarter;
        EXPECT_NEAR(picture.u[at], expected[1], 4) << quarter;
        EXPECT_NEAR(picture.v[at], expected[2], 4) << quarter;
    }
}

TEST_F(Zetplay, recordsEachFrameOnceAtItsTimeAndKeepsWhatIsCutShort) {
    _scratch.write("cut.y4m", _video.substr(0, _video.size() - 100));
    _scratch.write("still.y4m", quarteredVideo(64, 32, 1));
    _scratch.write("resize.txt", "frame 4\nresize 400 200\nframe 3\nresize 100 50\nframe\n");
    const struct {
        const char* arguments;
        const char* prefix;
        int status;
        std::size_t least, most;  // pictures
        const char* line;         // on standard error, which is no terminal
    } cases[] = {
        {"good.y4m --size 320x160", "", 0, 9, 9, ""},
        {"good.y4m --size 321x161 --loop --frames 20", "", 0, 20, 20, ""},
        {"still.y4m --size 320x160 --frames 5", "", 0, 5, 5, ""},
        {"good.y4m --size 320x160 --script resize.txt", "", 0, 8, 8, ""},
        {"good.y4m --size 320x160 --loop", "timeout --preserve-status -s INT 2", 130, 10, 2000, ""},
        {"cut.y4m --size 320x160", "", 1, 8, 8, "zetplay: cut\\.y4m: damaged[^\n]+\n"},
        // A disk that is full after 30 000 bytes.
        {"good.y4m --size 320x160 --loop", "prlimit --fsize=30000 env --ignore-signal=XFSZ", 1, 10, 2000,
         "zetplay: r\\.mp4: File too large\n"},
    };
    for (const auto& recording : cases) {
        SCOPED_TRACE(recording.arguments);
        const Result result =
            run("--record r.mp4 --shot shot.png " + std::string(recording.arguments), recording.prefix);
        EXPECT_EQ(result.status, recording.status);
        EXPECT_THAT(result.err, testing::MatchesRegex(recording.line));
        const auto pictures = picturesOf(_scratch.path("r.mp4"));
        EXPECT_THAT(pictures.size(), testing::AllOf(testing::Ge(recording.least), testing::Le(recording.most)));
        for (const Picture& picture : pictures)
            EXPECT_NEAR(picture.seconds, 0.04 * static_cast<double>(picture.number), 1e-3);
        expectRecorded(pictures.back());
        expectQuarters(readImage("shot.png"), false);
    }
}

TEST_F(Zetplay, galleryHasEachViewAndALabelledSheetOfAll) {
    ASSERT_EQ(run("--gallery all --size 800x400 --synthetic 480x480").status, 0);
    const Image sheet = readImage("all/contact-sheet.png");
    // Four columns, three rows of pictures of half the size, each over 30 rows with its label, 12 pixels around them.
    ASSERT_EQ(sheet.width, 4 * (400 + 12) + 12);
    ASSERT_EQ(sheet.height, 3 * (200 + 30 + 12) + 12);
    const char* const names[] = {"00-flat", "01-half-sphere", "02-panorama", "03-four-pane", "04-map",     "05-drum",
                                 "06-bowl", "07-wall-three",  "08-wall-two", "09-wall-one",  "10-wall-180"};
    std::set<std::string> labels;
    for (int view = 0; view < static_cast<int>(std::size(names)); ++view) {
        SCOPED_TRACE(names[view]);
        const Image picture = readImage("all/" + std::string(names[view]) + ".png");
        const int left = 3 * (12 + view % 4 * 412);
        const int top = 12 + view / 4 * 242;
        double difference = 0;
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 3 * 400; ++x) {
                const std::uint8_t* upper = picture.row(2 * y) + x / 3 * 6 + x % 3;
                const std::uint8_t* lower = upper + 3 * picture.width;
                difference +=
                    std::abs(sheet.row(top + y)[left + x] - (upper[0] + upper[3] + lower[0] + lower[3]) / 4.0);
            }
        }
        EXPECT_LT(difference / (200 * 3 * 400), 1) << "more than rounding";
        std::string label;
        for (int y = top + 200; y < top + 230; ++y)
            label.append(reinterpret_cast<const char*>(sheet.row(y)) + left, 3 * 400);
        EXPECT_GT(std::count(label.begin(), label.end(), '\xe6'), 100) << "ink";
        labels.insert(label);
    }
    EXPECT_EQ(labels.size(), 11u) << "each label is its own";
}

}  // namespace
}  // namespace zetplay::test
