#pragma once

#include <cmath>

namespace zet::test {

constexpr double halfTurn = 180.0 / M_PI;

struct Vec {
    double x = 0, y = 0, z = 0;
};

inline Vec operator+(const Vec& a, const Vec& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator*(double k, const Vec& a) {
    return {k * a.x, k * a.y, k * a.z};
}
inline double dot(const Vec& a, const Vec& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The angles of a point of the dome, degrees: `a` around the axis from -y towards -x, `b` from the rim to the pole.
struct DomeAngles {
    double a = 0;
    double b = 0;
};

/// Where the ray from inside the ball of radius 6 about the origin leaves it.
inline DomeAngles hitDome(const Vec& from, const Vec& towards) {
    const Vec d = 1.0 / std::sqrt(dot(towards, towards)) * towards;
    const double along = dot(from, d);
    const Vec hit = from + (-along + std::sqrt(along * along - dot(from, from) + 36.0)) * d;
    const double a = std::atan2(-hit.x, -hit.y) * halfTurn;
    return {a < 0.0 ? a + 360.0 : a, std::asin(-hit.z / 6.0) * halfTurn};
}

/// The camera that a column-major view matrix stands for.
struct Pose {
    explicit Pose(const float* m)
        : right{m[0], m[4], m[8]},
          up{m[1], m[5], m[9]},
          ahead{-m[2], -m[6], -m[10]},
          eye((-m[12] * right) + (-m[13] * up) + (m[14] * ahead)) {}

    Vec right, up, ahead, eye;
};

}  // namespace zet::test
