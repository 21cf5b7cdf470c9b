#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <string>
#include <vector>

namespace zet::test {

/// Every core set of DejaVu has it, and its J leans far to the left.
inline const char* const serifFont = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";

/// A line of text as the labels show it: 0 or 255 a pixel, top row first.
struct Block {
    int rowBytes = 0;
    int rows = 0;
    std::vector<std::uint8_t> pixels;
};

/// FreeType's own pictures of characters, rendered in the glyph slot and laid side by side.
class Font {
public:
    explicit Font(const char* path) {
        FT_Init_FreeType(&_library);
        FT_New_Face(_library, path, 0, &_face);
        FT_Set_Pixel_Sizes(_face, 48, 48);
    }
    ~Font() { FT_Done_FreeType(_library); }
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    Block block(const std::string& text) {
        struct Dot {
            int x, y;
            bool isOn;
        };
        Block block;
        block.rows = static_cast<int>(slot('~').metrics.vertAdvance / 64) + 10;
        std::vector<Dot> dots;
        int pen = 0;
        for (const char c : text) {
            const FT_GlyphSlotRec& glyph = slot(c == ' ' ? 'a' : c);
            const int width = static_cast<int>(glyph.bitmap.width), left = c == ' ' ? 0 : glyph.bitmap_left;
            for (int i = 0; c != ' ' && i < width * static_cast<int>(glyph.bitmap.rows); ++i) {
                dots.push_back({pen + left + i % width, block.rows - 10 - glyph.bitmap_top + i / width,
                                glyph.bitmap.buffer[i / width * glyph.bitmap.pitch + i % width] != 0});
            }
            pen += left + width;
        }
        block.rowBytes = (pen + 3) & ~3;
        block.pixels.resize(static_cast<std::size_t>(block.rowBytes * block.rows));
        for (const Dot& dot : dots) {
            if (dot.x < 0 || dot.y < 0 || dot.x >= block.rowBytes || dot.y >= block.rows) continue;
            block.pixels[static_cast<std::size_t>(dot.y * block.rowBytes + dot.x)] = dot.isOn ? 255 : 0;
        }
        return block;
    }

private:
    const FT_GlyphSlotRec& slot(char c) {
        FT_Load_Char(_face, static_cast<FT_ULong>(c), FT_LOAD_RENDER);
        return *_face->glyph;
    }

    FT_Library _library = nullptr;
    FT_Face _face = nullptr;
};

}  // namespace zet::test
