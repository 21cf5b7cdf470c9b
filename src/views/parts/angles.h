#pragma once

#include <algorithm>
#include <cmath>

#include "config/relaxed.h"

// How views keep angles in range, each rule named after what it does: they look alike and differ. Degrees. All results
// are finite for finite angles.

namespace zet::ZETShow {

/// Takes whole turns off at once and keeps fraction and sign: 725.5 gives 5.5, -360.25 gives -0.25.
inline float dropWholeTurns(float angle) {
    return std::fmod(angle, 360.0f);  // what an integer division of the integer part leaves, for any size
}

/// Corrects one turn into (-360, 360); an angle further out stays out.
inline float wrapOnceSigned(float angle) {
    if (angle <= -360.0f) angle += 360.0f;
    if (angle >= 360.0f) angle -= 360.0f;
    return angle;
}

/// Corrects one turn, upward and then downward, into [0, 360); an angle further out stays out.
inline float wrapOncePositive(float angle) {
    if (angle <= 0.0f) angle += 360.0f;
    if (angle >= 360.0f) angle -= 360.0f;
    return angle;
}

/// Within -limit to limit, both included.
inline float clampBothWays(float value, float limit) {
    return std::clamp(value, -limit, limit);
}

/// `value + step`, stored as float. Held within 2^24, up to where a float counts whole degrees: no finger gets there,
/// and a gesture from outside that does must not make the angle infinite. `step` may be infinite.
inline float heldSum(double value, double step) {
    constexpr double farthest = 16777216.0;
    return static_cast<float>(std::clamp(value + step, -farthest, farthest));
}

/// Adds to an angle that two threads change, held in the same way.
inline void addHeld(Relaxed<float>& angle, double step) {
    angle.update([step](float value) { return heldSum(value, step); });
}

}  // namespace zet::ZETShow
