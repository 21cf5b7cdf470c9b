#include "synthetic/strokefont.h"

#include <algorithm>
#include <cmath>

namespace zetplay {

namespace {

/// Strokes are lines between points of a grid 4 wide and 6 high. "xy" is a point, a blank draws on to the next one, a
/// bar lifts the pen.
constexpr float unit = 1.0f / 6;
constexpr float halfStroke = 0.48f * unit;
constexpr float gap = 1.8f * unit;
constexpr float farAway = 1e3f;

struct Glyph {
    char character;
    int width;  ///< grid units
    std::string_view strokes;
};

constexpr Glyph glyphs[] = {
    {'0', 4, "10 30 41 45 36 16 05 01 10"},
    {'1', 4, "14 26 20|10 30"},
    {'2', 4, "05 16 36 45 44 00 40"},
    {'3', 4, "05 16 36 45 44 33 13|33 42 41 30 10 01"},
    {'4', 4, "30 36 02 42"},
    {'5', 4, "46 06 03 33 42 41 30 10 01"},
    {'6', 4, "45 36 16 05 01 10 30 41 42 33 03"},
    {'7', 4, "06 46 10"},
    {'8', 4, "13 04 05 16 36 45 44 33 13 02 01 10 30 41 42 33"},
    {'9', 4, "01 10 30 41 45 36 16 05 04 13 43"},
    {':', 0, "01|04"},
    {'.', 0, "00"},
    {'-', 3, "03 33"},
    {'A', 4, "00 05 16 36 45 40|03 43"},
    {'B', 4, "03 33 44 45 36 06 00 30 41 42 33"},
    {'D', 4, "00 06 36 45 41 30 00"},
    {'E', 4, "46 06 00 40|03 33"},
    {'F', 4, "46 06 00|03 33"},
    {'G', 4, "45 36 16 05 01 10 30 41 43 23"},
    {'H', 4, "00 06|40 46|03 43"},
    {'I', 0, "00 06"},
    {'L', 4, "06 00 40"},
    {'M', 4, "00 06 23 46 40"},
    {'N', 4, "00 06 40 46"},
    {'O', 4, "10 30 41 45 36 16 05 01 10"},
    {'P', 4, "00 06 36 45 44 33 03"},
    {'R', 4, "00 06 36 45 44 33 03|23 40"},
    {'S', 4, "45 36 16 05 04 13 33 42 41 30 10 01"},
    {'T', 4, "06 46|26 20"},
    {'U', 4, "06 01 10 30 41 46"},
    {'W', 4, "06 10 23 30 46"},
};

const Glyph& glyphOf(char character) {
    static constexpr Glyph empty{' ', 4, ""};
    const auto* const found = std::find_if(std::begin(glyphs), std::end(glyphs),
                                           [=](const Glyph& glyph) { return glyph.character == character; });
    return found == std::end(glyphs) ? empty : *found;
}

float distanceToLine(float x, float y, float x1, float y1, float x2, float y2) {
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    const float square = dx * dx + dy * dy;
    const float along = square > 0 ? std::clamp(((x - x1) * dx + (y - y1) * dy) / square, 0.0f, 1.0f) : 0.0f;
    const float offX = x - x1 - along * dx;
    const float offY = y - y1 - along * dy;
    return std::sqrt(offX * offX + offY * offY);
}

float distanceToStrokes(std::string_view strokes, float x, float y) {
    float nearest = farAway;
    float fromX = 0;
    float fromY = 0;
    bool penDown = false;
    for (std::size_t i = 0; i + 1 < strokes.size(); i += 3) {
        const float toX = static_cast<float>(strokes[i] - '0') * unit;
        const float toY = static_cast<float>(strokes[i + 1] - '0') * unit;
        nearest = std::min(nearest, distanceToLine(x, y, penDown ? fromX : toX, penDown ? fromY : toY, toX, toY));
        fromX = toX;
        fromY = toY;
        penDown = i + 2 < strokes.size() && strokes[i + 2] == ' ';
    }
    return nearest;
}

/// The letter at `x`; `left` receives where it begins.
std::size_t findCell(std::string_view text, float x, float& left) {
    left = 0;
    for (std::size_t cell = 0;; ++cell) {
        const float width = static_cast<float>(glyphOf(text[cell]).width) * unit;
        if (x < left + width + gap / 2 || cell + 1 == text.size()) return cell;
        left += width + gap;
    }
}

}  // namespace

float textWidth(std::string_view text) {
    float width = text.empty() ? 0.0f : -gap;
    for (const char character : text) width += static_cast<float>(glyphOf(character).width) * unit + gap;
    return width;
}

std::size_t textCell(std::string_view text, float x) {
    float left = 0;
    return text.empty() ? 0 : findCell(text, x, left);
}

float textDistance(std::string_view text, float x, float y) {
    if (text.empty() || y < -gap || y > 1 + gap || x < -gap) return farAway;
    float left = 0;
    const Glyph& glyph = glyphOf(text[findCell(text, x, left)]);
    if (x > left + static_cast<float>(glyph.width) * unit + gap) return farAway;
    return distanceToStrokes(glyph.strokes, x - left, y) - halfStroke;
}

}  // namespace zetplay
