#pragma once

#include <cmath>

namespace zetplay {

/// A point or direction in metres (x to the east, y to the north, z up), or a colour as R'G'B' of 0 to 1.
struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
};

using Colour = Vec3;

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator*(Vec3 a, float factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
constexpr float dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 mix(Vec3 a, Vec3 b, float part) {
    return a + (b - a) * part;
}
inline float length(Vec3 a) {
    return std::sqrt(dot(a, a));
}

}  // namespace zetplay
