#pragma once

#include <optional>
#include <vector>

#include "media/source.h"

namespace zetplay {

/// A circle in a picture: pixels from the top left corner, y downward; the first pixel's centre is (0.5, 0.5).
struct LensCircle {
    double x = 0;
    double y = 0;
    double radius = 0;
};

/// Finds the circle that a fisheye lens throws on a sensor, from the dark surround of a few pictures. The picture's
/// edges may cut the circle. At least a sixth of its rim must divide light from dark. The pixels have to be square: an
/// oval is missed, or a part of it is taken for a circle.
class LensFinder {
public:
    /// Adds a picture's luma. One of another size starts over.
    void add(const Picture& picture);
    /// The circle in the pictures so far, to about a thousandth of its radius; nothing where none is plain to see.
    std::optional<LensCircle> find() const;

private:
    int _width = 0;  ///< of the pictures, pixels
    int _height = 0;
    int _shrink = 1;            ///< pixels along the side of a square that makes one of `_light`
    std::vector<float> _light;  ///< brightest mean luma so far of each square: dark corners light up with time
};

}  // namespace zetplay
