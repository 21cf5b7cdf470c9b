#include "overlay/textfilter.h"

#include <sys/stat.h>

extern "C" {
#include <libavutil/log.h>
}

#include <atomic>
#include <thread>

#include "overlay/material.h"
#include "support/calllog.h"

namespace zet::test {
namespace {

using ZETShow::filterData;

const int zone = setenv("TZ", "EST5", 1);  // before the first use of the time
constexpr int rgba = 26;
constexpr std::int64_t someTime = 1700000000999;  // 2023-11-14 22:13:20 UTC
const char* const someText = "2023-11-14 17:13:20";
// Not the font that fontconfig falls back to.
const char* const fontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSerif-Bold.ttf";

struct Case {
    const char* name;
    std::int64_t time;
    const char* text;
    int width, height, fontSize, y;
};

// No pixel is white: each has a value that it can lose.
Bytes makePicture(int width, int height) {
    Bytes picture(static_cast<std::size_t>(width * height * 4));
    for (std::size_t i = 0; i < picture.size(); ++i) picture[i] = i * 7919 % 211 & 255;
    return picture;
}

// The ffmpeg tool draws the same. It takes the text from a file, past all escaping.
void expectText(const Folder& folder, const Case& c, const char* font) {
    const CallLog log(LogLevel::warning);
    Bytes picture = makePicture(c.width, c.height);
    folder.save("in.rgba", picture);
    std::ofstream(folder.path / "text") << c.text;
    char tool[2048];
    std::snprintf(tool, sizeof tool,
                  "cd '%s' && ffmpeg -nostdin -v error -y -f rawvideo -pix_fmt rgba -s %dx%d -i in.rgba "
                  "-vf drawtext=textfile=text:expansion=none:fontcolor=white:x=0:y=%d:fontsize=%d:fontfile=%s "
                  "-f rawvideo -pix_fmt rgba out.rgba",
                  folder.path.c_str(), c.width, c.height, c.y, c.fontSize, fontFile);
    ASSERT_EQ(std::system(tool), 0);
    av_log_set_level(AV_LOG_INFO);
    testing::internal::CaptureStderr();
    filterData(c.time, picture.data(), c.width, c.height, c.width * 4, font, rgba);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << c.name;
    EXPECT_TRUE(picture == Folder::load(folder.path / "out.rgba")) << c.name;
    EXPECT_TRUE(picture != makePicture(c.width, c.height) || c.fontSize == 0) << c.name;
    EXPECT_EQ(log.lines(), std::vector<std::string>()) << c.name;
}

TEST(TextFilter, writesTheTime) {
    const Case cases[] = {
        {"full HD", someTime, someText, 1920, 1080, 54, 13},
        {"small", someTime, someText, 642, 362, 18, 4},
        {"wider than the picture", someTime, someText, 50, 400, 20, 5},
        {"no room for a glyph", someTime, someText, 8, 19, 0, 0},
        {"half a second before 1970", -500, "1969-12-31 19:00:00", 640, 360, 18, 4},
        {"a second and a half before 1970", -1500, "1969-12-31 18:59:59", 640, 360, 18, 4},
    };
    for (const Case& c : cases) expectText(Folder(), c, fontFile);
}

TEST(TextFilter, takesTheFontUnderAnyName) {
    const Folder folder;
    std::filesystem::current_path(folder.path);
    for (const char* name : {"C:font.ttf", R"(back\slash\)", R"(\:)", "it's", "''", "100%{pts}%%", "[in][a]", "a,b;c=d",
                             " blank both ", "line\nend\n", R"(',\';[:' )", "\xc3\xa9t\xc3\xa9", "text='x':x=9"}) {
        std::filesystem::copy_file(fontFile, name);
        expectText(folder, {name, someTime, someText, 480, 400, 20, 5}, name);
    }
    std::filesystem::current_path("/");
}

TEST(TextFilter, leavesLibavsLogToThePlayer) {
    av_log_set_level(AV_LOG_INFO);
    std::atomic<bool> changed = false;
    const std::jthread player([&](const std::stop_token& end) {
        while (!end.stop_requested()) changed = changed || av_log_get_level() != AV_LOG_INFO;
    });
    Bytes picture = makePicture(1920, 1080);
    filterData(someTime, picture.data(), 1920, 1080, 1920 * 4, fontFile, rgba);
    EXPECT_FALSE(changed);
}

TEST(TextFilter, leavesThePictureWholeAndSaysWhy) {
    const Folder folder;
    const std::string noFont = folder.save("text", {'n', 'o'}), pipe = folder.path / "pipe", longName(3900, 'x');
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string failed = "filterData init error filtersDescr: drawtext=fontsize=18:fontfile='";
    const std::string tail = "':fontcolor=white:x=0:y=4:text='2023-11-14 17\\:13\\:20' \r\n";
    const std::string refused = "filterData refused time: 1700000000999 font path: ";
    const std::pair<std::string, std::string> cases[] = {
        {"/no/fo:nt", failed + "/no/fo\\:nt" + tail},
        {longName, failed + longName + tail},
        {noFont, failed + noFont + tail},
        {pipe, failed + pipe + tail},  // nobody writes
        {std::string(5000, 'x'), refused + "5000 bytes \r\n"},
        {std::string(2100, ':'), refused + "2100 bytes \r\n"},  // too long only after escaping
    };
    for (const auto& [font, line] : cases) {
        const CallLog log;
        Bytes picture = makePicture(640, 360);
        av_log_set_level(AV_LOG_INFO);
        testing::internal::CaptureStderr();
        filterData(someTime, picture.data(), 640, 360, 640 * 4, font.c_str(), rgba);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(av_log_get_level(), AV_LOG_INFO);
        EXPECT_TRUE(picture == makePicture(640, 360)) << line;
        EXPECT_EQ(log.lines(), std::vector{line});
    }
}

}  // namespace
}  // namespace zet::test
