// Boxes, with their lines beside them.

#include "overlay/airectrender.h"

#include "overlay/facelayout.h"
#include "render/mesh.h"
#include "render/program.h"
#include "zet/records.h"

namespace zet::ZETShow {

namespace {

const char* const rectVertexStage = R"(
attribute vec4 a_position;
uniform mat4 u_mvpMatrix;
void main() {
    gl_Position = u_mvpMatrix * a_position;
}
)";

const char* const rectFragmentStage = R"(
precision mediump float;
uniform vec3 u_color;
void main() {
    gl_FragColor = vec4(u_color.r, u_color.g, u_color.b, 1.0);
}
)";

constexpr float boxLineWidth = 3.0f;  // pixels
constexpr int leastTextOption = 2;    // the option's bits beyond the box

constexpr float femaleColor[3] = {1, 0, 0};
constexpr float maleColor[3] = {0, 1, 0};

}  // namespace

AiRectRender::~AiRectRender() {
    if (_rectProgram != 0) glDeleteProgram(_rectProgram);
    for (FT_BitmapGlyph glyph : _glyphs) {
        if (glyph) FT_Done_Glyph(&glyph->root);
    }
    if (_face) FT_Done_Face(_face);
    if (_library) FT_Done_FreeType(_library);
    if (_textProgram != 0) {
        glDeleteProgram(_textProgram);
        glDeleteTextures(1, &_textTexture);
    }
}

int AiRectRender::initRect() {
    _rectProgram = buildProgram(rectVertexStage, rectFragmentStage);
    _rectMatrixLoc = glGetUniformLocation(_rectProgram, "u_mvpMatrix");
    _rectColorLoc = glGetUniformLocation(_rectProgram, "u_color");
    glLineWidth(boxLineWidth);
    return 0;
}

int AiRectRender::drawFaces(const float* texCoords, const float* matrix, const FaceInfo* faces, int count,
                            int frameWidth, int frameHeight, int option) {
    if (_rectProgram == 0 && _textProgram == 0) return -1;
    for (const FaceInfo* face = faces; face != faces + count; ++face) {
        const float* const color = face->gender == 0 ? femaleColor : maleColor;
        const FaceBox box(*face, frameWidth, frameHeight);
        if ((option & FACE_BOX) && _rectProgram != 0) drawBox(box, color, matrix);
        if (option < leastTextOption || !_textReady) continue;
        beginText(color, matrix);
        drawLines({*face, box, option}, texCoords);
        glDisable(GL_BLEND);
    }
    return 0;
}

void AiRectRender::drawBox(const FaceBox& box, const float* color, const float* matrix) {
    const float right = box.right();
    const float bottom = box.bottom();
    const float edges[16] = {box.left, box.top, right,    box.top, box.left, bottom,  right, bottom,
                             box.left, box.top, box.left, bottom,  right,    box.top, right, bottom};
    glUseProgram(_rectProgram);
    bindArrays(edges, 2, nullptr);
    glUniformMatrix4fv(_rectMatrixLoc, 1, GL_FALSE, matrix);
    glUniform3f(_rectColorLoc, color[0], color[1], color[2]);
    glDrawArrays(GL_LINES, 0, 8);
    releaseArrays();
}

void AiRectRender::drawLines(const FaceLines& lines, const float* texCoords) {
    float y = lines.y;
    for (int i = 0; i < lines.count; ++i) {
        drawString(lines.text[i], lines.x, y, FaceLines::lineHeight, texCoords);
        y -= FaceLines::lineHeight;
    }
}

}  // namespace zet::ZETShow
