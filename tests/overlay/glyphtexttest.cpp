#include <sys/stat.h>

#include "overlay/airectrender.h"
#include "overlay/material.h"
#include "support/calllog.h"

namespace zet::test {
namespace {

using namespace std::string_literals;
using ZETShow::AiRectRender;

Block blockOf(const AiRectRender& render) {
    return {render.rowBytes(), render.rows(), {render.pixels(), render.pixels() + render.rowBytes() * render.rows()}};
}

TEST(GlyphText, laysFreeTypesPicturesSideBySide) {
    std::string all;
    for (char c = '!'; c <= '~'; ++c) all += c;
    for (const char* name : {"DejaVuSerif.ttf", "DejaVuSans-Bold.ttf", "DejaVuSansMono.ttf"}) {
        const std::string font = std::string("/usr/share/fonts/truetype/dejavu/") + name;
        AiRectRender render;
        ASSERT_EQ(render.loadFont(font), 0);
        // One object for all of them: a long text must leave nothing in a short one.
        for (const std::string& text : {std::string(50, 'W'), all.substr(0, 50), all.substr(50), "J leans over WJMJ"s,
                                        "a b  c "s, "i"s, "ii"s, "iii"s, "   "s, ""s}) {
            ASSERT_EQ(render.rasterize(text), 0) << name << ": " << text;
            EXPECT_TRUE(blockOf(render) == typeset(text, font)) << name << ": " << text;
        }
    }
}

TEST(GlyphText, refusesWhatIsNotPlainShortText) {
    AiRectRender render;
    ASSERT_EQ(render.loadFont(serifFont), 0);
    ASSERT_EQ(render.rasterize("before"), 0);
    const Block before = blockOf(render);
    for (const std::string& text : {std::string(51, 'a'), std::string(51, ' '), "\0"s, "a\tb"s, "\x1f"s, "end\x7f"s,
                                    "\x80"s, "caf\xc3\xa9"s, "\xff"s}) {
        EXPECT_EQ(render.rasterize(text), -1) << testing::PrintToString(text);
        EXPECT_TRUE(blockOf(render) == before) << testing::PrintToString(text);
    }
}

TEST(GlyphText, takesNoFontThatIsNone) {
    const Folder folder;
    const auto take = [&folder](const Bytes& bytes) {
        AiRectRender render;
        if (render.loadFont(folder.save("font", bytes)) != 0) return false;
        // Whatever a damaged font has in it: in bounds, which the sanitizers watch.
        for (char c = ' '; c <= '~'; ++c) render.rasterize(std::string(50, c));
        return true;
    };
    const Bytes font = Folder::load(serifFont);
    EXPECT_TRUE(take(font));
    EXPECT_FALSE(take(Bytes(font.begin(), font.begin() + std::ssize(font) / 2)));
    EXPECT_FALSE(take(makeBmp(9, 9, 24, [](int, int) { return 0u; })));
    EXPECT_FALSE(take({}));
    const std::string pipe = folder.path / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {"/nowhere/font.ttf"s, "/usr"s, pipe}) {
        const CallLog log;
        EXPECT_EQ(AiRectRender().initText(path), -1) << path;
        EXPECT_EQ(log.lines(), std::vector{"AiRectRender::initText no font: " + path + "\n"});
    }
    unsigned noise = 1;
    for (int variant = 0; variant < 60; ++variant) {
        Bytes damaged = font;
        for (int i = 0; i < 4 << variant % 12; ++i) {
            noise = noise * 1103515245u + 12345u;
            // Every other time in the first 1000 bytes: the tables' headers and the numbers that scale all glyphs.
            damaged[(noise >> 8) % (variant % 2 ? damaged.size() : 1000)] = static_cast<std::uint8_t>(noise >> 3);
        }
        take(damaged);
    }
}

}  // namespace
}  // namespace zet::test
