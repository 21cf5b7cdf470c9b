#pragma once

// The GLSL that dewarping programs share: from the two angles of a dome to a place in the picture. The lens circle lies
// in the middle of the lens region and touches its edges; s is the angle around the axis, t the angle from the rim
// towards the pole, radians. A fragment stage joins the pieces that it needs.

namespace zet::ZETShow {

/// Declares `lensRadius`, the circle's radius as a part of half the region. `float evenRadius(float t)`: the radius
/// falls evenly from there at the rim to 0 at the pole, as an equidistant lens draws (slightly below 0 past the pole).
extern const char* const evenRadius;

/// `float poleShrink(float t)`: the factor, 1 at the rim and about 0.69 at the pole, that draws a radius inward.
extern const char* const poleShrink;

/// `vec2 lensPoint(float radius, float s)`: where a point of the dome lies in the picture; s = 0 is the top of the
/// circle and a quarter circle its right. For domes that are drawn turned by a half circle.
extern const char* const lensPoint;

/// `vec2 lensPointOpposite(float radius, float s)`: the same with s = 0 at the bottom and a quarter circle at the left.
extern const char* const lensPointOpposite;

}  // namespace zet::ZETShow
