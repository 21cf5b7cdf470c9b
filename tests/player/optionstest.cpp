#include "options.h"

#include <gtest/gtest.h>

namespace zetplay {
namespace {

std::optional<Options> parse(std::vector<const char*> words) {
    words.insert(words.begin(), "zetplay");
    return parseOptions(static_cast<int>(words.size()), words.data());
}

TEST(Options, FollowTheCommandLine) {
    const auto file = parse({"in.mp4"});
    EXPECT_EQ(file->input, "in.mp4");
    EXPECT_EQ(file->view, 0);
    EXPECT_EQ(file->width, 1280);
    EXPECT_EQ(file->height, 720);
    EXPECT_FALSE(file->lensGiven);

    const auto camera = parse({"--mount", "wall", "--synthetic", "640x480@12.5"});
    EXPECT_EQ(camera->view, 1);
    EXPECT_EQ(camera->mount, Mount::wall);
    EXPECT_EQ(camera->synthetic.width, 640);
    EXPECT_EQ(camera->synthetic.height, 480);
    EXPECT_EQ(camera->synthetic.frameRate, 12.5);

    const auto all = parse({"--view",   "wall-180", "in.y4m",   "--size", "320x200", "--lens",     "5000,5001,4900,-1",
                            "--frames", "7",        "--script", "-",      "--font",  "a b.ttf",    "--start-time",
                            "-1000",    "--loop",   "--stats",  "--shot", "o.png",   "--headless", "--rect-zoom"});
    EXPECT_EQ(all->view, 10);
    EXPECT_EQ(all->width, 320);
    EXPECT_EQ(all->height, 200);
    EXPECT_EQ(all->lens, (LensRegion{5000, 5001, 4900, -1}));
    EXPECT_EQ(all->frames, 7);
    EXPECT_EQ(all->script, "-");
    EXPECT_EQ(all->font, "a b.ttf");
    EXPECT_EQ(all->startTime, -1000);
    EXPECT_TRUE(all->loop && all->stats && all->headless && all->rectZoom);
    EXPECT_EQ(all->shot, "o.png");

    const auto none = parse({"in.mp4", "--lens", "none", "--view", "2"});
    EXPECT_TRUE(none->lensGiven);
    EXPECT_FALSE(none->lens);
    EXPECT_EQ(none->view, 2);
}

TEST(Options, WrongOnesAreNamedInOneLine) {
    const struct {
        std::vector<const char*> words;
        const char* named;
    } cases[] = {
        {{"--view", "11"}, "11"},
        {{"--view", "-1"}, "-1"},
        {{"--view", "fish"}, "fish"},
        {{"--view", ""}, "--view"},
        {{"--size", "1280"}, "1280"},
        {{"--size", "0x720"}, "0x720"},
        {{"--size", "1280x720p"}, "1280x720p"},
        {{"--size", "40000x4"}, "40000x4"},
        {{"--lens", "1,2,3"}, "1,2,3"},
        {{"--lens", "1,2,3,x"}, "1,2,3,x"},
        {{"--lens", "1,2,3,4,5"}, "1,2,3,4,5"},
        {{"--mount", "floor"}, "floor"},
        {{"--synthetic", "640x480@0"}, "640x480@0"},
        {{"--synthetic", "640x480@nan"}, "640x480@nan"},
        {{"--synthetic", "640@30"}, "640@30"},
        {{"--frames", "0"}, "--frames"},
        {{"--frames", "many"}, "many"},
        {{"--frames"}, "--frames"},
        {{"--unheard-of"}, "--unheard-of"},
        {{"a.mp4", "b.mp4"}, "b.mp4"},
        {{"a.mp4", "--mount", "wall"}, "--mount"},
        {{"a.mp4", "--synthetic", "640x480"}, "--synthetic"},
        {{""}, "INPUT"},
    };
    for (const auto& wrong : cases) {
        try {
            parse(wrong.words);
            ADD_FAILURE() << "accepted: " << wrong.named;
        } catch (const WrongUsage& usage) {
            const std::string line = usage.what();
            EXPECT_NE(line.find(wrong.named), line.npos) << line;
            EXPECT_EQ(line.find('\n'), line.npos) << line;
        }
    }
}

}  // namespace
}  // namespace zetplay
