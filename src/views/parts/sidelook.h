#pragma once

#include "render/matrix.h"

namespace zet::ZETShow {

// The camera of a wall view's detail: it is before the open rim, looks into the dome and turns to a side. Degrees;
// a positive yaw looks to the right of the lens circle, a positive pitch down.

/// Limit of yaw and pitch, and of their sum in size: the camera turns within a diamond.
inline constexpr float viewLimit = 50.4f;

/// How far the dome comes towards the camera that turns to a side: most on the axes of the diamond, nothing in its
/// middle and on its diagonals.
float sideShift(float pitch, float yaw);

/// The camera, with the dome `moveZ` nearer to it, into the view matrix.
void lookAside(MatrixState& matrices, float moveZ, float pitch, float yaw);

}  // namespace zet::ZETShow
