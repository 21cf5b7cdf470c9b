#pragma once

#include <array>
#include <cmath>
#include <numbers>

namespace bench {

/// Column-major, as GL takes it; vectors are columns on the right, angles are degrees.
struct Mat4 {
    std::array<float, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    friend Mat4 operator*(const Mat4& a, const Mat4& b) {
        Mat4 product;
        for (std::size_t column = 0; column < 4; ++column) {
            for (std::size_t row = 0; row < 4; ++row) {
                float sum = 0;
                for (std::size_t k = 0; k < 4; ++k) sum += a.m[4 * k + row] * b.m[4 * column + k];
                product.m[4 * column + row] = sum;
            }
        }
        return product;
    }
};

inline Mat4 scaling(float x, float y, float z) {
    return {{x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1}};
}

inline Mat4 translation(float x, float y, float z) {
    return {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1}};
}

/// The turns of the right hand.
inline Mat4 turnX(float degrees) {
    const float a = degrees * std::numbers::pi_v<float> / 180.0f;
    return {{1, 0, 0, 0, 0, std::cos(a), std::sin(a), 0, 0, -std::sin(a), std::cos(a), 0, 0, 0, 0, 1}};
}

inline Mat4 turnY(float degrees) {
    const float a = degrees * std::numbers::pi_v<float> / 180.0f;
    return {{std::cos(a), 0, -std::sin(a), 0, 0, 1, 0, 0, std::sin(a), 0, std::cos(a), 0, 0, 0, 0, 1}};
}

inline Mat4 turnZ(float degrees) {
    const float a = degrees * std::numbers::pi_v<float> / 180.0f;
    return {{std::cos(a), std::sin(a), 0, 0, -std::sin(a), std::cos(a), 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};
}

/// As glFrustum, about the axis: half width and half height at the near plane.
inline Mat4 frustum(float halfWidth, float halfHeight, float near, float far) {
    return {{near / halfWidth, 0, 0, 0, 0, near / halfHeight, 0, 0, 0, 0, (near + far) / (near - far), -1, 0, 0,
             2 * near * far / (near - far), 0}};
}

}  // namespace bench
