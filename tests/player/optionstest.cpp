#include "options.h"

#include <gtest/gtest.h>

namespace zetplay {
namespace {

std::optional<Options> parse(std::vector<const char*> words) {
    words.insert(words.begin(), "zetplay");
    return parseOptions(static_cast<int>(words.size()), words.data());
}

TEST(Options, WrongOnesAreNamedInOneLine) {
    const struct {
        std::vector<const char*> words;
        const char* named;
    } cases[] = {
        {{"--view", "11"}, "11"},
        {{"--view", "fish"}, "fish"},
        {{"--size", "1280"}, "1280"},
        {{"--size", "40000x4"}, "40000x4"},
        {{"--lens", "1,2,3"}, "1,2,3"},
        {{"--lens", "1,2,3,x"}, "1,2,3,x"},
        {{"--mount", "floor"}, "floor"},
        {{"--synthetic", "640x480@0"}, "640x480@0"},
        {{"--frames", "0"}, "--frames"},
        {{"--frames", "many"}, "many"},
        {{"--unheard-of"}, "--unheard-of"},
        {{"a.mp4", "b.mp4"}, "b.mp4"},
        {{"a.mp4", "--mount", "wall"}, "--mount"},
        {{"a.mp4", "--synthetic", "640x480"}, "--synthetic"},
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
