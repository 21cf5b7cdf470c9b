#pragma once

#include <cmath>

#include "support/picture.h"
#include "views/pose.h"

namespace zet::test {

/// A scene in which every direction has a colour of its own. `z` is along the lens axis, `x` towards the right of the
/// lens circle, `y` towards its top.
inline Yuv sceneColor(const Vec& d) {
    const auto level = [](double value) { return static_cast<int>(std::lround(value)); };
    return {level(110 + 40 * d.x + 15 * d.z), level(128 + 30 * d.y), level(128 + 25 * d.x - 25 * d.z)};
}

/// The direction that an equidistant lens of 180 degrees puts at `radius` (1 at the edge of its circle), `azimuth`
/// degrees clockwise from the top.
inline Vec lensDirection(double radius, double azimuth) {
    const double theta = radius * M_PI / 2;
    const double turn = azimuth / halfTurn;
    return {std::sin(theta) * std::sin(turn), std::sin(theta) * std::cos(turn), std::cos(theta)};
}

/// The scene through that lens; the circle touches the frame's edges.
inline Frame lensFrame(int side) {
    return Frame(side, side, [side](int x, int y) {
        const double half = side / 2.0;
        const double right = (x + 0.5 - half) / half;
        const double above = (half - y - 0.5) / half;
        return sceneColor(lensDirection(std::hypot(right, above), std::atan2(right, above) * halfTurn));
    });
}

/// `v` turned about an axis by minus the degrees, as the views count.
inline Vec turnX(const Vec& v, double degrees) {
    const double c = std::cos(degrees / halfTurn), s = std::sin(degrees / halfTurn);
    return {v.x, c * v.y + s * v.z, -s * v.y + c * v.z};
}
inline Vec turnY(const Vec& v, double degrees) {
    const double c = std::cos(degrees / halfTurn), s = std::sin(degrees / halfTurn);
    return {c * v.x - s * v.z, v.y, s * v.x + c * v.z};
}
inline Vec turnZ(const Vec& v, double degrees) {
    const double c = std::cos(degrees / halfTurn), s = std::sin(degrees / halfTurn);
    return {c * v.x + s * v.y, -s * v.x + c * v.y, v.z};
}

/// A camera in front of a dome that is pressed in depth, turned to a side or about its axis, shifted, tilted, and
/// turned by a half circle where it is seen from inside. Works the way back and forth between the surface of a pane (-1
/// to 1, y upward) and the dome.
struct DomeCamera {
    double eyeZ = 0, near = 1;
    double tilt = 0, moveY = 0, moveZ = 0, turn = 0, half = 180;  // degrees, dome units
    double side = 0;                                              // degrees
    double aspect = 1, press = 1;

    Vec toDome(const Vec& v) const {
        const Vec shifted = turnX(turnZ(v + Vec{0, 0, eyeZ}, -half), -tilt) + Vec{0, -moveY, -moveZ};
        const Vec pressed = turnY(turnZ(shifted, -turn), -side);
        return {pressed.x, pressed.y, pressed.z / press};
    }
    Vec fromDome(const Vec& v) const {
        const Vec turned = turnZ(turnY({v.x, v.y, v.z * press}, side), turn);
        return turnZ(turnX(turned + Vec{0, moveY, moveZ}, tilt), half) + Vec{0, 0, -eyeZ};
    }
    /// What the dome shows there; `b` below 0 or no number is beside it.
    DomeAngles at(double x, double y) const {
        const Vec eye = toDome({});
        return hitDome(eye, toDome({aspect * x / near, y / near, -1}) + -1.0 * eye);
    }
    /// How far inside the pane a place of the dome lies: negative is beside it or behind the camera.
    double inside(const DomeAngles& place) const {
        const double a = place.a / halfTurn, b = place.b / halfTurn;
        const Vec seen = fromDome(-6.0 * Vec{std::sin(a) * std::cos(b), std::cos(a) * std::cos(b), std::sin(b)});
        if (seen.z >= 0) return -1;
        return 1 - near / -seen.z * std::max(std::fabs(seen.x) / aspect, std::fabs(seen.y));
    }
};

}  // namespace zet::test
