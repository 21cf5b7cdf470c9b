#pragma once

#include <cstddef>
#include <string_view>

namespace zetplay {

/// A small font of round strokes: the capitals and signs that the synthetic room and the names of the views need.
/// Letters are 1 high, measured between the middles of the strokes; x grows to the right and y upward from the foot of
/// the first letter. A character that the font lacks is blank.

/// Index of the letter of the line at `x`, or nearest to it.
std::size_t textCell(std::string_view text, float x);

/// Width of a line of text, between the middles of the outermost strokes.
float textWidth(std::string_view text);

/// Distance from the point to the edge of the nearest stroke of the letter there; negative inside a stroke.
float textDistance(std::string_view text, float x, float y);

}  // namespace zetplay
