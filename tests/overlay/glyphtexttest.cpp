#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "overlay/airectrender.h"
#include "overlay/bmp.h"
#include "overlay/glyphs.h"

namespace zet::test {
namespace {

using ZETShow::AiRectRender;

TEST(GlyphText, laysFreeTypesPicturesSideBySide) {
    const std::string fonts = "/usr/share/fonts/truetype/dejavu/";
    for (const char* name : {"DejaVuSerif.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf"}) {
        Font font((fonts + name).c_str());
        AiRectRender render;
        ASSERT_EQ(render.loadFont(fonts + name), 0);
        std::string all;
        for (char c = '!'; c <= '~'; ++c) all += c;
        const std::string texts[] = {
            all.substr(0, 50), all.substr(50), std::string(50, 'W'), "J leans over WJMJ", "i", "ii", "iii", "   ", "",
            "a b  c ",
        };
        // One object for all of them: a long text must leave nothing in a short one.
        for (const std::string& text : texts) {
            const Block expected = font.block(text);
            ASSERT_EQ(render.rasterize(text), 0) << name << ": " << text;
            EXPECT_EQ(render.rows(), expected.rows);
            ASSERT_EQ(render.rowBytes(), expected.rowBytes) << name << ": " << text;
            const Bytes pixels(render.pixels(), render.pixels() + expected.pixels.size());
            EXPECT_TRUE(pixels == expected.pixels) << name << ": " << text;
        }
    }
}

TEST(GlyphText, refusesWhatIsNotPlainShortText) {
    AiRectRender render;
    ASSERT_EQ(render.loadFont(serifFont), 0);
    ASSERT_EQ(render.rasterize("before"), 0);
    const int rowBytes = render.rowBytes();
    const Bytes pixels(render.pixels(), render.pixels() + rowBytes * render.rows());
    const std::string texts[] = {
        std::string(51, 'a'),
        std::string(51, ' '),
        "a\tb",
        "line\n",
        std::string(1, '\0'),
        "\x1f",
        "end\x7f",
        "\x80",
        "caf\xc3\xa9",
        "\xff",
    };
    for (const std::string& text : texts) {
        EXPECT_EQ(render.rasterize(text), -1) << testing::PrintToString(text);
        EXPECT_EQ(render.rowBytes(), rowBytes);
        EXPECT_TRUE(Bytes(render.pixels(), render.pixels() + pixels.size()) == pixels);
    }
}

TEST(GlyphText, takesNoFontThatIsNone) {
    const std::string path = testing::TempDir() + "zet glyphtext " + std::to_string(getpid());
    const auto load = [&path](const Bytes& bytes) {
        save(path, bytes);
        AiRectRender render;
        const int result = render.loadFont(path);
        // Whatever a damaged font has in it: in bounds, which the sanitizers watch.
        if (result == 0) {
            for (char c = ' '; c <= '~'; ++c) render.rasterize(std::string(50, c));
        }
        return result;
    };
    AiRectRender render;
    EXPECT_EQ(render.loadFont("/nowhere/font.ttf"), -1);
    EXPECT_EQ(AiRectRender().loadFont("/usr"), -1);
    EXPECT_EQ(load({}), -1);
    EXPECT_EQ(load(makeBmp(9, 9, 24, [](int, int) { return 0u; })), -1);

    std::ifstream stream(serifFont, std::ios::binary);
    const Bytes font{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(load(font), 0);
    EXPECT_EQ(load(Bytes(font.begin(), font.begin() + std::ssize(font) / 2)), -1);
    unsigned noise = 1;
    for (int variant = 0; variant < 60; ++variant) {
        Bytes damaged = font;
        for (int i = 0; i < 4 << variant % 12; ++i) {
            noise = noise * 1103515245u + 12345u;
            // Every other time among the tables' heads and the numbers that scale all glyphs.
            damaged[(noise >> 8) % (variant % 2 ? damaged.size() : 1000)] = static_cast<std::uint8_t>(noise >> 3);
        }
        load(damaged);
    }
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace zet::test
