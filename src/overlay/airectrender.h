#pragma once

#include <GLES2/gl2.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_GLYPH_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "render/frame.h"

namespace zet::ZETShow {

struct FaceBox;
struct FaceLines;

/// Boxes round the faces of a frame, with up to three lines of text beside each. Everything is in the coordinates
/// of the video quad (-1 to 1, y upward) and goes through the view's matrix. Render thread.
class AiRectRender {
public:
    AiRectRender() = default;
    ~AiRectRender();
    AiRectRender(const AiRectRender&) = delete;
    AiRectRender& operator=(const AiRectRender&) = delete;

    /// Builds the program of the boxes. Always 0: one that doesn't build leaves boxes out.
    int initRect();
    /// Loads the font, builds the program of the text. 0, or -1: then all text is left out for the life of the object.
    int initText(const std::string& path);
    /// The font's part of `initText`, without GL.
    int loadFont(const std::string& path);

    /// Draws boxes and lines by the bits of `option`, see `FaceOption`. `texCoords` are those of the video's corners,
    /// the frame's size is that which the view has fitted. 0, or -1 if there is no program at all.
    int drawFaces(const float* texCoords, const float* matrix, const FaceInfo* faces, int count, int frameWidth,
                  int frameHeight, int option);

    /// Writes `text` into the work buffer, one byte a pixel, 0 or 255, top row first. 0, or -1 for more than 50 bytes
    /// or anything but printable ASCII; then nothing has changed. No GL.
    int rasterize(std::string_view text);

    // The string last rasterised.
    int rowBytes() const { return _textRowBytes; }
    int rows() const { return _textHeight; }
    const std::uint8_t* pixels() const { return _textBuffer.data(); }

private:
    void drawBox(const FaceBox& box, const float* color, const float* matrix);
    void drawLines(const FaceLines& lines, const float* texCoords);
    void beginText(const float* color, const float* matrix);

    int measure(std::string_view text) const;
    int advanceOf(char c) const;
    void drawGlyph(const FT_BitmapGlyphRec& glyph, int cursor);
    int rasterizeString(std::string_view text, GLuint texture);
    int drawString(std::string_view text, float x, float y, float size, const float* texCoords);

    static constexpr int firstGlyph = '!';
    static constexpr int glyphCount = '~' - '!' + 1;

    // The font, rendered once.
    FT_Library _library = nullptr;
    std::vector<std::uint8_t> _fontFile;
    FT_Face _face = nullptr;
    FT_BitmapGlyph _glyphs[glyphCount] = {};  // by character code - 33
    int _textHeight = 0;                      // pixels
    int _textMargin = 0;                      // pixel rows below the baseline
    int _spaceWidth = 0;                      // pixels

    // The string last rasterised.
    std::vector<std::uint8_t> _textBuffer;  // grows and never shrinks
    int _textRowBytes = 0;
    float _textAspect = 0.0f;  // width to height, as drawn

    // GL names and locations.
    GLuint _textProgram = 0;
    GLint _textMatrixLoc = 0;
    GLint _textColorLoc = 0;
    GLuint _textTexture = 0;
    GLuint _rectProgram = 0;
    GLint _rectMatrixLoc = 0;
    GLint _rectColorLoc = 0;

    bool _textReady = false;
};

}  // namespace zet::ZETShow
