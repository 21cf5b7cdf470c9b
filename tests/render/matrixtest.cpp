// The matrices against numbers worked out by hand.

#include "render/matrix.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>

namespace zet::test {
namespace {

using namespace ZETShow;
using Matrix = std::array<float, 16>;
using Exact = std::array<double, 16>;

constexpr Matrix identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix some = {1.5f, -2, 3, 0.25f, 0.5f, 4, -1, 2, -3, 0.75f, 2, 1, 5, -6, 7, 0.5f};

// Row r of column c is at 4 * c + r.
Exact product(const auto& a, const auto& b) {
    Exact result = {};
    for (std::size_t i = 0; i < 64; ++i) {
        const std::size_t c = i / 16, r = i / 4 % 4, k = i % 4;
        result[4 * c + r] += static_cast<double>(a[4 * k + r]) * static_cast<double>(b[4 * c + k]);
    }
    return result;
}

TEST(Matrix, multipliesInDoubleAlsoInPlace) {
    const Matrix other = {0.1f, 2, -0.3f, 1, 4, 0.5f, 6, -7, 0.8f, 9, 1, 0.2f, 1e8f, 1, 0, 2e7f};
    Matrix left = some, right = other;
    matrixMultiply(left.data(), left.data(), other.data());
    matrixMultiply(right.data(), some.data(), right.data());
    const Exact exact = product(some, other);
    for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(left[i], static_cast<float>(exact[i])) << i;
    EXPECT_EQ(left, right);
}

// Errors in what the views use would show in their pixels; errors in these would not.
TEST(Matrix, turnsWithThePiOfTheViewsAndScalesByALongAxis) {
    Matrix m = identity;
    matrixRotate(m.data(), 90, 0, 0, 1);
    const float right = std::bit_cast<float>(0x40490FD0) * 90 / 180;
    EXPECT_EQ(m[0], static_cast<float>(std::cos(static_cast<double>(right))));
    m = identity;
    matrixRotate(m.data(), 90, 0, 0, 2);
    const Matrix turn = {0, -2, 0, 0, 2, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1};
    for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(m[i], turn[i], 1e-5) << "1 - cos times 2 times 2, element " << i;
}

}  // namespace
}  // namespace zet::test
