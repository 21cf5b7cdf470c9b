#pragma once

#include <ft2build.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace zet::test {

using Bytes = std::vector<std::uint8_t>;

/// For the files of one case, deleted with it. Other cases run at the same time in folders of their own.
struct Folder {
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }

    std::string save(const std::string& name, const Bytes& bytes) const {
        std::ofstream(path / name, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), ssize(bytes));
        return path / name;
    }
    static Bytes load(const std::string& file) {
        std::ifstream stream(file, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(stream), {});
    }

    const std::filesystem::path path = testing::TempDir() + "zet overlay " + std::to_string(getpid());
};

/// Little endian.
inline void put(Bytes& bytes, int offset, std::int64_t value, int count = 4) {
    for (int i = 0; i < count; ++i)
        bytes.at(static_cast<std::size_t>(offset + i)) = static_cast<std::uint8_t>(value >> 8 * i);
}

/// A BMP file of unpadded rows; a negative height stores the top row first. `paint` gives 0xaarrggbb of a pixel from
/// the top left corner.
inline Bytes makeBmp(int width, int height, int bits, const std::function<std::uint32_t(int x, int y)>& paint) {
    const int rows = std::abs(height), size = 54 + bits / 8 * width * rows;
    Bytes file(static_cast<std::size_t>(size));
    put(file, 0, 'B' | 'M' << 8);
    put(file, 2, size);
    put(file, 10, 54);
    put(file, 18, width);
    put(file, 22, height);
    put(file, 28, bits, 2);
    for (int i = 0; i < width * rows; ++i) {
        const int row = i / width;
        put(file, 54 + bits / 8 * i, paint(i % width, height < 0 ? row : rows - 1 - row), bits / 8);
    }
    return file;
}

/// A line of text as the labels show it: 0 or 255 a pixel, top row first.
struct Block {
    bool operator==(const Block&) const = default;
    std::uint8_t& at(int x, int y) { return pixels[static_cast<std::size_t>(y * rowBytes + x)]; }

    int rowBytes = 0;
    int rows = 0;
    Bytes pixels;
};

/// Every core set of DejaVu has it, and its J leans far to the left.
inline const std::string serifFont = "/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf";

/// FreeType's own pictures of characters, rendered in the glyph slot and laid side by side.
inline Block typeset(const std::string& text, const std::string& font = serifFont) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    FT_New_Face(library, font.c_str(), 0, &face);
    FT_Set_Pixel_Sizes(face, 48, 48);
    Block block;
    for (const bool isMeasured : {false, true}) {
        int pen = 0;
        for (const char c : text) {
            FT_Load_Char(face, static_cast<FT_ULong>(c == ' ' ? 'a' : c), FT_LOAD_RENDER);
            const FT_GlyphSlotRec& glyph = *face->glyph;
            const int left = c == ' ' ? 0 : glyph.bitmap_left, columns = static_cast<int>(glyph.bitmap.width);
            const int rows = isMeasured && c != ' ' ? static_cast<int>(glyph.bitmap.rows) : 0;
            for (int i = 0; i < columns * rows; ++i) {
                const int x = pen + left + i % columns, y = block.rows - 10 - glyph.bitmap_top + i / columns;
                if (x < 0 || y < 0 || x >= block.rowBytes || y >= block.rows) continue;
                const bool isOn = glyph.bitmap.buffer[i / columns * glyph.bitmap.pitch + i % columns] != 0;
                block.at(x, y) = isOn ? 255 : 0;
            }
            pen += left + columns;
        }
        FT_Load_Char(face, '~', FT_LOAD_DEFAULT);
        block.rowBytes = (pen + 3) & ~3;
        block.rows = static_cast<int>(face->glyph->metrics.vertAdvance / 64) + 10;
        block.pixels.resize(static_cast<std::size_t>(block.rowBytes * block.rows));
    }
    FT_Done_FreeType(library);
    return block;
}

}  // namespace zet::test
