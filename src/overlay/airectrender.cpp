// Boxes, and which lines stand beside them.

#include "overlay/airectrender.h"

#include <charconv>

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
constexpr float boxMargin = 0.2f;     // of the face's side, on each side
constexpr float boxGrowth = 1.4f;     // the box's side to the face's
constexpr int leastTextOption = 2;    // the option's bits beyond the box

// Quad units.
constexpr float lineHeight = 0.1f;
constexpr double textGap = 0.01;  // between a box and its lines

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
    _rectPositionLoc = glGetAttribLocation(_rectProgram, "a_position");
    _rectColorLoc = glGetUniformLocation(_rectProgram, "u_color");
    glLineWidth(boxLineWidth);
    return 0;
}

int AiRectRender::drawFaces(const float* texCoords, const float* matrix, const FaceInfo* faces, int count,
                            int frameWidth, int frameHeight, int option) {
    if (_rectProgram == 0 && _textProgram == 0) return -1;
    for (const FaceInfo* face = faces; face != faces + count; ++face) {
        const float* const color = face->gender == 0 ? femaleColor : maleColor;
        const Box box = boxOf(*face, frameWidth, frameHeight);
        if ((option & FACE_BOX) && _rectProgram != 0) drawBox(box, color, matrix);
        if (option < leastTextOption || !_textReady) continue;
        beginText(texCoords, color, matrix);
        drawLines(*face, box, option);
        endText();
    }
    return 0;
}

AiRectRender::Box AiRectRender::boxOf(const FaceInfo& face, int frameWidth, int frameHeight) {
    const auto x = static_cast<float>(face.x);
    const auto y = static_cast<float>(face.y);
    const auto width = static_cast<float>(face.width);
    const auto height = static_cast<float>(face.height);
    const auto wide = static_cast<float>(frameWidth);
    const auto high = static_cast<float>(frameHeight);
    constexpr auto growth = static_cast<double>(boxGrowth);
    return {
        static_cast<float>(2.0 * ((x - boxMargin * width) / wide) - 1.0),
        static_cast<float>(-(2.0 * ((y - boxMargin * height) / high) - 1.0)),
        static_cast<float>(2.0 * (width * growth / wide)),
        static_cast<float>(2.0 * (-height * growth / high)),
    };
}

void AiRectRender::drawBox(const Box& box, const float* color, const float* matrix) {
    const float right = box.left + box.width;
    const float bottom = box.top + box.height;
    const float edges[16] = {box.left, box.top, right,    box.top, box.left, bottom,  right, bottom,
                             box.left, box.top, box.left, bottom,  right,    box.top, right, bottom};
    const auto position = static_cast<GLuint>(_rectPositionLoc);
    glUseProgram(_rectProgram);
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, edges);
    glUniformMatrix4fv(_rectMatrixLoc, 1, GL_FALSE, matrix);
    glUniform3f(_rectColorLoc, color[0], color[1], color[2]);
    glDrawArrays(GL_LINES, 0, 8);
    glDisableVertexAttribArray(position);
}

void AiRectRender::drawLines(const FaceInfo& face, const Box& box, int option) {
    std::string_view lines[3];
    int count = 0;
    char age[16];
    if ((option & FACE_NAME) && !face.name.empty()) lines[count++] = face.name;
    if (option & FACE_GENDER) lines[count++] = face.gender != 0 ? "male" : "female";
    if (option & FACE_AGE) {
        const char* const end = std::to_chars(age, age + sizeof age, face.age).ptr;
        lines[count++] = {age, static_cast<std::size_t>(end - age)};
    }
    const auto x = static_cast<float>(box.left + box.width + textGap);
    // Half a line up for each line beyond the second: the block stands beside the middle of the box.
    auto y = static_cast<float>(box.top + box.height * 0.5 + (count - 2) * 0.05);
    for (int i = 0; i < count; ++i) {
        drawString(lines[i], x, y, lineHeight);
        y -= lineHeight;
    }
}

}  // namespace zet::ZETShow
