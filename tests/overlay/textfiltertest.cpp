#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

extern "C" {
#include <libavutil/log.h>
}

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "overlay/textfilter.h"
#include "support/calllog.h"

namespace zet::ZETShow {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

constexpr int rgba = 26;
constexpr std::int64_t someTime = 1700000000999;  // 2023-11-14 22:13:20 UTC
// Not the font that fontconfig falls back to.
const char* const fontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSerif-Bold.ttf";

// A gradient under noise: every pixel that the text doesn't touch has a value that it can lose.
Bytes makePicture(int width, int height) {
    Bytes picture;
    unsigned noise = 1;
    for (int i = 0; i < width * height * 4; ++i) {
        noise = noise * 1103515245u + 12345u;
        picture.push_back(static_cast<std::uint8_t>(i / (4 * width) * 200 / height + static_cast<int>(noise >> 28)));
    }
    return picture;
}

class TextFilterTest : public testing::Test {
protected:
    void SetUp() override {
        setenv("TZ", "EST5", 1);
        tzset();
        // A name of its own: other cases run at the same time.
        _folder = fs::path(testing::TempDir()) / ("zet textfilter " + std::to_string(getpid()));
        fs::create_directories(_folder);
    }

    void TearDown() override { fs::remove_all(_folder); }

    // What the ffmpeg tool writes into the picture. The text comes from a file, past all escaping.
    Bytes throughTool(const Bytes& picture, int width, int height, const std::string& text, int fontSize, int y) {
        const fs::path in = _folder / "in.rgba";
        const fs::path out = _folder / "out.rgba";
        std::ofstream(in, std::ios::binary).write(reinterpret_cast<const char*>(picture.data()), std::ssize(picture));
        std::ofstream(_folder / "text") << text;
        const std::string size = std::to_string(width) + "x" + std::to_string(height);
        const std::string command =
            "cd '" + _folder.string() + "' && ffmpeg -nostdin -v error -y -f rawvideo" + " -pix_fmt rgba -s " + size +
            " -i in.rgba -vf drawtext=textfile=text" + ":expansion=none:fontcolor=white:x=0:y=" + std::to_string(y) +
            ":fontsize=" + std::to_string(fontSize) + ":fontfile=" + fontFile + " -f rawvideo -pix_fmt rgba out.rgba";
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::ifstream stream(out, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(stream), {});
    }

    fs::path _folder;
};

TEST_F(TextFilterTest, WritesWhatTheToolWrites) {
    const struct {
        const char* name;
        std::int64_t time;
        const char* text;
        int width, height, fontSize, y;
    } cases[] = {
        {"full HD", someTime, "2023-11-14 17:13:20", 1920, 1080, 54, 13},
        {"small", someTime, "2023-11-14 17:13:20", 642, 362, 18, 4},
        {"wider than the picture", someTime, "2023-11-14 17:13:20", 50, 400, 20, 5},
        {"no room for a glyph", someTime, "2023-11-14 17:13:20", 8, 19, 0, 0},
        {"one pixel", someTime, "2023-11-14 17:13:20", 1, 1, 0, 0},
        {"half a second before 1970", -500, "1969-12-31 19:00:00", 640, 360, 18, 4},
        {"a second and a half before 1970", -1500, "1969-12-31 18:59:59", 640, 360, 18, 4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const test::CallLog log;
        const Bytes before = makePicture(c.width, c.height);
        Bytes picture = before;
        filterData(c.time, picture.data(), c.width, c.height, c.width * 4, fontFile, rgba);
        EXPECT_TRUE(picture != before || c.fontSize == 0);
        EXPECT_TRUE(picture == throughTool(before, c.width, c.height, c.text, c.fontSize, c.y));
        EXPECT_THAT(log.lines(), ElementsAre());
    }
}

TEST_F(TextFilterTest, TakesTheFontUnderAnyName) {
    constexpr int width = 480;
    constexpr int height = 400;
    const Bytes before = makePicture(width, height);
    const Bytes expected = throughTool(before, width, height, "2023-11-14 17:13:20", 20, 5);
    const char* const names[] = {
        "C:font.ttf",   "a:b:c",    R"(back\slash\)",    R"(\:)",        "it's",        "''",
        "100%{pts}%%",  "[in][a]",  "a,b;c=d",           " blank both ", "line\nend\n", "\ttab",
        R"(',\';[:' )", "drawtext", "\xc3\xa9t\xc3\xa9", "text='x':x=9",
    };
    const test::CallLog log;
    fs::current_path(_folder);
    for (const char* const name : names) {
        for (const std::string& path : {_folder.string() + "/" + name, std::string(name)}) {
            SCOPED_TRACE(path);
            fs::copy_file(fontFile, path);
            Bytes picture = before;
            filterData(someTime, picture.data(), width, height, width * 4, path.c_str(), rgba);
            EXPECT_TRUE(picture == expected);
            fs::remove(path);
        }
    }
    fs::current_path("/");
    EXPECT_THAT(log.lines(), ElementsAre());
}

TEST_F(TextFilterTest, LeavesThePictureWholeAndSaysWhy) {
    const std::string noFont = (_folder / "text").string();
    std::ofstream(noFont) << "no font";
    const std::string noPath(3900, 'x');
    const std::string tail = ":fontcolor=white:x=0:y=4:text='2023-11-14 17\\:13\\:20' \r\n";
    const struct {
        const char* name;
        std::string font;
        int width, pixelFormat;
        std::vector<std::string> lines;
    } cases[] = {
        {"no such file",
         "/no/fo:nt",
         640,
         rgba,
         {"filterData init error filtersDescr: drawtext=fontsize=18:fontfile='/no/fo\\:nt'" + tail}},
        {"no such file, under a name that fills the line",
         noPath,
         640,
         rgba,
         {"filterData init error filtersDescr: drawtext=fontsize=18:fontfile='" + noPath + "'" + tail}},
        {"no font",
         noFont,
         640,
         rgba,
         {"filterData init error filtersDescr: drawtext=fontsize=18:fontfile='" + noFont + "'" + tail}},
        {"path that can't be held",
         std::string(5000, 'x'),
         640,
         rgba,
         {"filterData refused time: 1700000000999 font path: 5000 bytes \r\n"}},
        {"path that can't be held once escaped",
         std::string(2100, ':'),
         640,
         rgba,
         {"filterData refused time: 1700000000999 font path: 2100 bytes \r\n"}},
        {"no such pixel format",
         fontFile,
         640,
         9999,
         {"ZETTextFilter::init Cannot create buffer source\n",
          std::string("filterData init error filtersDescr: drawtext=fontsize=18:fontfile='") + fontFile + "'" + tail}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const test::CallLog log;
        const Bytes before = makePicture(640, 360);
        Bytes picture = before;
        av_log_set_level(AV_LOG_INFO);
        testing::internal::CaptureStderr();
        filterData(someTime, picture.data(), 640, 360, 640 * 4, c.font.c_str(), c.pixelFormat);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(av_log_get_level(), AV_LOG_INFO);
        EXPECT_TRUE(picture == before);
        EXPECT_EQ(log.lines(), c.lines);
    }
}

}  // namespace

}  // namespace zet::ZETShow
