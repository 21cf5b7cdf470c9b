#pragma once

#include <cmath>

#include "support/picture.h"

namespace zet::test {

constexpr double halfTurn = 180.0 / M_PI;  // degrees in a radian

struct Vec {
    double x = 0, y = 0, z = 0;

    friend Vec operator+(const Vec& a, const Vec& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vec operator*(double k, const Vec& a) { return {k * a.x, k * a.y, k * a.z}; }
    friend double dot(const Vec& a, const Vec& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

    /// Turned about an axis by minus the degrees, as the views count.
    Vec aboutX(double degrees) const { return {x, along(y, z, degrees), along(z, -y, degrees)}; }
    Vec aboutY(double degrees) const { return {along(x, -z, degrees), y, along(z, x, degrees)}; }
    Vec aboutZ(double degrees) const { return {along(x, y, degrees), along(y, -x, degrees), z}; }

private:
    static double along(double a, double b, double degrees) {
        return a * std::cos(degrees / halfTurn) + b * std::sin(degrees / halfTurn);
    }
};

/// Where a ray goes into (side -1) or out of (side 1) the surface x^2 + y^2 + k z^2 = 36; no number where it passes by.
inline Vec meet(const Vec& from, const Vec& ray, double k, double side) {
    const Vec squashed{ray.x, ray.y, k * ray.z};
    const double a = dot(ray, squashed), b = dot(from, squashed), c = dot(from, {from.x, from.y, k * from.z}) - 36;
    return from + (-b + side * std::sqrt(b * b - a * c)) / a * ray;
}

/// The angles of a point of the dome, degrees: `a` around the axis from -y towards -x, `b` from the rim to the pole,
/// which is at z = -6.
struct DomeAngles {
    double a = 0, b = 0;

    Vec point() const { return Vec{0, 0, -6}.aboutX(90 - b).aboutZ(a); }
};

/// A scene in which every direction has a colour of its own. `z` is along the lens axis, `x` towards the right of the
/// lens circle, `y` towards its top.
inline Yuv sceneColor(const Vec& d) {
    const auto level = [](double value) { return static_cast<int>(std::lround(value)); };
    return {level(110 + 40 * d.x + 15 * d.z), level(128 + 30 * d.y), level(128 + 25 * d.x - 25 * d.z)};
}

/// The direction that an equidistant lens of 180 degrees puts at `radius` (1 at the edge of its circle), `azimuth`
/// degrees clockwise from the top.
inline Vec lensDirection(double radius, double azimuth) {
    return Vec{0, 0, 1}.aboutX(radius * 90).aboutZ(azimuth);
}

/// The scene through that lens; the circle touches the frame's edges.
inline Frame lensFrame(int side) {
    return Frame(side, side, [side](int x, int y) {
        const double right = (x + 0.5) / side * 2 - 1, above = 1 - (y + 0.5) / side * 2;
        return sceneColor(lensDirection(std::hypot(right, above), std::atan2(right, above) * halfTurn));
    });
}

/// A camera in front of a dome that is pressed in depth and widened, turned to a side or about its axis, shifted,
/// tilted, and turned by a half circle where it is seen from inside. Works the way back and forth between the surface
/// of a pane (-1 to 1, y upward) and the dome.
struct DomeCamera {
    double eyeZ = 0, near = 1;
    double tilt = 0, moveY = 0, moveZ = 0, turn = 0, half = 180;  // degrees, dome units
    double side = 0;                                              // degrees
    double aspect = 1, press = 1, wide = 1;

    Vec toDome(const Vec& v) const {
        const Vec shifted = (v + Vec{0, 0, eyeZ}).aboutZ(-half).aboutX(-tilt) + Vec{0, -moveY, -moveZ};
        const Vec turned = shifted.aboutZ(-turn).aboutY(-side);
        return {turned.x / wide, turned.y, turned.z / press};
    }
    Vec fromDome(const Vec& v) const {
        const Vec turned = Vec{v.x * wide, v.y, v.z * press}.aboutY(side).aboutZ(turn);
        return (turned + Vec{0, moveY, moveZ}).aboutX(tilt).aboutZ(half) + Vec{0, 0, -eyeZ};
    }
    /// What the dome shows there; `b` below 0 or no number is beside it.
    DomeAngles at(double x, double y) const {
        const Vec eye = toDome({});
        const Vec hit = meet(eye, toDome({aspect * x / near, y / near, -1}) + -1.0 * eye, 1, 1);
        const double a = std::atan2(-hit.x, -hit.y) * halfTurn;
        return {a < 0 ? a + 360 : a, std::asin(-hit.z / 6) * halfTurn};
    }
    /// How far inside the pane a place of the dome lies: negative is beside it or behind the camera.
    double inside(const DomeAngles& place) const {
        const Vec seen = fromDome(place.point());
        if (seen.z >= 0) return -1;
        return 1 - near / -seen.z * std::max(std::fabs(seen.x) / aspect, std::fabs(seen.y));
    }
};

}  // namespace zet::test
