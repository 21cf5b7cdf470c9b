// Glyphs: a font rendered once, and strings turned into an alpha texture.

#include <algorithm>

#include "overlay/airectrender.h"
#include "overlay/bmpfile.h"
#include "render/frame.h"
#include "render/mesh.h"
#include "render/program.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

const char* const textVertexStage = R"(
attribute vec4 a_position;
attribute vec2 a_texCoord;
uniform mat4 u_mapMatrix;
varying vec2 v_texCoord;
void main() {
    gl_Position = u_mapMatrix * a_position;
    v_texCoord = a_texCoord;
}
)";

const char* const textFragmentStage = R"(
uniform vec3 u_color;
uniform sampler2D u_texture;
varying vec2 v_texCoord;
void main() {
    gl_FragColor = vec4(u_color.r, u_color.g, u_color.b, texture2D(u_texture, v_texCoord).a);
}
)";

constexpr FT_F26Dot6 charSize = 48 * 64;  // points; pixels too, at 72 dpi
constexpr FT_UInt dotsPerInch = 72;
constexpr int rowsBelowBaseline = 10;
constexpr std::size_t longestText = 50;     // bytes
constexpr double narrowing = 1.5;           // of a string's width
constexpr std::int64_t largest = 16 << 20;  // bytes of a rasterised string: no sound font comes near

}  // namespace

int AiRectRender::initText(const std::string& path) {
    if (loadFont(path) != 0) {
        ZETLog::instance().warning("AiRectRender::initText no font: %s\n", path.c_str());
        return -1;
    }
    _textProgram = buildProgram(textVertexStage, joinFragment({textFragmentStage}).c_str());
    if (_textProgram == 0) return -1;
    _textMatrixLoc = glGetUniformLocation(_textProgram, "u_mapMatrix");
    _textColorLoc = glGetUniformLocation(_textProgram, "u_color");
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glUseProgram(_textProgram);
    glUniform1i(glGetUniformLocation(_textProgram, "u_texture"), otherUnit);
    glGenTextures(1, &_textTexture);
    _textReady = true;
    return 0;
}

int AiRectRender::loadFont(const std::string& path) {
    if (FT_Init_FreeType(&_library) != 0) return -1;
    // Read as a whole: FreeType would wait for a pipe, and would map a file that may shrink under it.
    _fontFile = readFile(path.c_str());
    const auto size = static_cast<FT_Long>(_fontFile.size());
    if (size == 0 || FT_New_Memory_Face(_library, _fontFile.data(), size, 0, &_face) != 0) return -1;
    if (FT_Set_Char_Size(_face, charSize, charSize, dotsPerInch, dotsPerInch) != 0) return -1;
    for (int i = 0; i < glyphCount; ++i) {
        const FT_UInt index = FT_Get_Char_Index(_face, static_cast<FT_ULong>(firstGlyph + i));
        FT_Glyph glyph = nullptr;
        if (FT_Load_Glyph(_face, index, 0) != 0 || FT_Get_Glyph(_face->glyph, &glyph) != 0) return -1;
        if (FT_Glyph_To_Bitmap(&glyph, FT_RENDER_MODE_NORMAL, nullptr, 1) != 0) {
            FT_Done_Glyph(glyph);
            return -1;
        }
        _glyphs[i] = reinterpret_cast<FT_BitmapGlyph>(glyph);
        // A font of ready-made bitmaps may hold other pixels than the bytes that are read here.
        const FT_Bitmap& bitmap = _glyphs[i]->bitmap;
        const bool isBytes = bitmap.pixel_mode == FT_PIXEL_MODE_GRAY && bitmap.pitch == static_cast<int>(bitmap.width);
        if (bitmap.width != 0 && bitmap.rows != 0 && !isBytes) return -1;
    }
    _spaceWidth = static_cast<int>(_glyphs['a' - firstGlyph]->bitmap.width);
    _textMargin = rowsBelowBaseline;
    _textHeight = static_cast<int>(_face->glyph->metrics.vertAdvance / 64) + rowsBelowBaseline;
    return _textHeight > 0 ? 0 : -1;
}

int AiRectRender::advanceOf(char c) const {
    if (c == ' ') return _spaceWidth;
    const FT_BitmapGlyphRec& glyph = *_glyphs[c - firstGlyph];
    return glyph.left + static_cast<int>(glyph.bitmap.width);
}

int AiRectRender::measure(std::string_view text) const {
    if (text.size() > longestText) return -1;
    int width = 0;
    for (const char c : text) {
        if (c < ' ' || c > '~') return -1;
        width += advanceOf(c);
    }
    return std::max(width, 0);
}

int AiRectRender::rasterize(std::string_view text) {
    const int width = measure(text);
    if (width < 0) return -1;
    const int rowBytes = (width + 3) / 4 * 4;  // GL's own alignment of rows
    const std::int64_t needed = static_cast<std::int64_t>(_textHeight) * rowBytes;
    if (needed > largest) return -1;
    _textRowBytes = rowBytes;
    if (_textBuffer.size() < static_cast<std::size_t>(needed)) _textBuffer.resize(static_cast<std::size_t>(needed));
    std::fill(_textBuffer.begin(), _textBuffer.end(), std::uint8_t{0});
    int cursor = 0;
    for (const char c : text) {
        if (c != ' ') drawGlyph(*_glyphs[c - firstGlyph], cursor);
        cursor += advanceOf(c);
    }
    _textAspect = static_cast<float>(rowBytes) / static_cast<float>(_textHeight * narrowing);
    return 0;
}

void AiRectRender::drawGlyph(const FT_BitmapGlyphRec& glyph, int cursor) {
    const int first = _textHeight - glyph.top - _textMargin;
    const int width = static_cast<int>(glyph.bitmap.width);
    const int end = std::min(_textHeight, first + static_cast<int>(glyph.bitmap.rows));
    for (int row = std::max(first, 0); row < end; ++row) {
        const std::uint8_t* const source = glyph.bitmap.buffer + static_cast<std::ptrdiff_t>(row - first) * width;
        std::uint8_t* const line = _textBuffer.data() + static_cast<std::ptrdiff_t>(row) * _textRowBytes;
        for (int i = 0; i < width; ++i) {
            // Fully on where the glyph only touches. Where it leans over the one before, its own box decides; what
            // leans out of the row is cut.
            const int x = cursor + glyph.left + i;
            if (x >= 0 && x < _textRowBytes) line[x] = source[i] != 0 ? 0xff : 0;
        }
    }
}

int AiRectRender::rasterizeString(std::string_view text, GLuint texture) {
    if (rasterize(text) != 0) return -1;
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, _textRowBytes, _textHeight, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                 _textBuffer.data());
    sampleSmoothly();
    return 0;
}

int AiRectRender::drawString(std::string_view text, float x, float y, float size, const float* texCoords) {
    if (rasterizeString(text, _textTexture) != 0) return -1;
    const float right = x + _textAspect * size;
    const float top = y + size;
    const float corners[12] = {x, y, 0, right, y, 0, x, top, 0, right, top, 0};
    bindArrays(corners, 3, texCoords);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    releaseArrays();
    return 0;
}

void AiRectRender::beginText(const float* color, const float* matrix) {
    glEnable(GL_BLEND);
    glUseProgram(_textProgram);
    glUniformMatrix4fv(_textMatrixLoc, 1, GL_FALSE, matrix);
    glUniform3f(_textColorLoc, color[0], color[1], color[2]);
    glActiveTexture(GL_TEXTURE0 + otherUnit);
}

}  // namespace zet::ZETShow
