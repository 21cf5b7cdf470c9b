#pragma once

#include <string>

#include "media/source.h"

namespace zetplay {

/// The pictures of `openSynthetic`. An ideal equidistant lens of 180 degrees (see `FisheyeLens`) hangs in a small room:
///
/// - `Mount::ceiling`: in the middle of the ceiling, 2.98 m over the floor, looking straight down. The NORTH wall is at
///   the top of the picture and EAST at its right, as on a map; the walls are 3 m (north, south) and 3.5 m (east,
///   west) from the camera. Letters have their tops outward: a person inside who faces the wall reads them from left
///   to right.
/// - `Mount::wall`: in the middle of the south wall, at a height of 1.6 m, looking north. The picture is upright: the
///   LEFT (west) wall is at its left, and the red line round the walls at the camera's height is its horizontal
///   diameter.
///
/// What moves: a person who walks an ellipse, and two clocks that show minutes, seconds and hundredths of the picture's
/// time. Both depend on number and rate alone.

/// What the clocks show: "MM:SS.HH", from 00:00.00 again after 100 minutes.
std::string clockText(double seconds);

}  // namespace zetplay
