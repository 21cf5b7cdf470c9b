#pragma once

#include <cstdint>
#include <vector>

namespace bench {

/// Triangles: five floats a vertex, its place and two numbers for the fragments.
struct Mesh {
    std::vector<float> vertices;
    std::vector<std::uint16_t> indices;
};

/// A flat rectangle about the origin; `(s0, t0)` at its lower left corner, `(s1, t1)` at the upper right one.
Mesh quad(float halfWidth, float halfHeight, float s0, float t0, float s1, float t1);

/// A vertex of a dome. `a` goes round the axis and `b` from the rim, z = 0, to the pole, radians.
struct DomeVertex {
    float x, y, z, s, t;
};
using DomeRule = DomeVertex (*)(double a, double b);

/// 134 columns of 34 cells, the last of each a little beyond the full and the quarter circle.
Mesh dome(DomeRule rule);

/// The half sphere of radius 6, its pole at z = -6, with `a` and `b` as numbers.
DomeVertex sphere(double a, double b);
/// The same, pressed to 0.97 of its depth.
DomeVertex pressedSphere(double a, double b);
/// The same as `sphere`, with an upright picture laid on it straight along the axis, 1.6 times as wide as high, -1
/// to 1.
DomeVertex underPicture(double a, double b);
/// An open cylinder and a bowl, with places in the square of the lens, -1 to 1.
DomeVertex drum(double a, double b);
DomeVertex bowl(double a, double b);

}  // namespace bench
