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

constexpr Exact identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix some = {1.5f, -2, 3, 0.25f, 0.5f, 4, -1, 2, -3, 0.75f, 2, 1, 5, -6, 7, 0.5f};

// Row r of column c stands at 4 * c + r.
Exact product(const auto& a, const auto& b) {
    Exact result = {};
    for (std::size_t i = 0; i < 64; ++i) {
        const std::size_t c = i / 16, r = i / 4 % 4, k = i % 4;
        result[4 * c + r] += static_cast<double>(a[4 * k + r]) * static_cast<double>(b[4 * c + k]);
    }
    return result;
}

void expectNear(const float* m, const Exact& expected, double tolerance, const char* name) {
    for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(m[i], expected[i], tolerance) << name << ", element " << i;
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

TEST(Matrix, turnsByMinusTheAngleMovesAndScalesAlongItsOwnAxes) {
    const double c = std::sqrt(0.75), third = 1 / std::sqrt(3.0);
    const struct {
        const char* name;
        double degrees, x, y, z;
        Exact turn;
    } cases[] = {{"x", 30, 1, 0, 0, {1, 0, 0, 0, 0, c, -0.5, 0, 0, 0.5, c, 0, 0, 0, 0, 1}},
                 {"y", 30, 0, 1, 0, {c, 0, 0.5, 0, 0, 1, 0, 0, -0.5, 0, c, 0, 0, 0, 0, 1}},
                 {"z", 30, 0, 0, 1, {c, -0.5, 0, 0, 0.5, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
                 {"x to z to y to x", 120, third, third, third, {0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1}},
                 {"1 - cos times 2 times 2", 90, 0, 0, 2, {0, -2, 0, 0, 2, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}},
                 {"by nothing", 0, 3, -4, 5, identity}};
    for (const auto& [name, degrees, x, y, z, turn] : cases) {
        Matrix m = some;
        matrixRotate(m.data(), static_cast<float>(degrees), static_cast<float>(x), static_cast<float>(y),
                     static_cast<float>(z));
        expectNear(m.data(), product(some, turn), 5e-5, name);  // 3.14159 for pi turns short by a millionth
    }
    Matrix m = some;
    matrixTranslate(m.data(), 2, -3, 0.5f);
    expectNear(m.data(), product(some, Exact{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, -3, 0.5, 1}), 1e-5, "moved");
    m = some;
    matrixScale(m.data(), 2, -3, 0.5f);
    expectNear(m.data(), product(some, Exact{2, 0, 0, 0, 0, -3, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1}), 0, "scaled");
    matrixIdentity(m.data());
    matrixRotate(m.data(), 90, 0, 0, 1);
    const float right = std::bit_cast<float>(0x40490FD0) * 90 / 180;
    EXPECT_EQ(m[0], static_cast<float>(std::cos(static_cast<double>(right)))) << "the pi of the views";
}

TEST(MatrixState, multipliesProjectionViewAndModel) {
    MatrixState state;
    expectNear(state._projectionMatrix, {}, 0, "a new state");
    state.setFrustum(1, 3, 2, 6, 2, 4);
    expectNear(state._projectionMatrix, {2, 0, 0, 0, 0, 1, 0, 0, 4, 2, -3, -1, 0, 0, -8, 0}, 0, "aside");
    // From (3, 4, 0) to the origin with z up: forward (-0.6, -0.8, 0), side (-0.8, 0.6, 0), up (0, 0, 1).
    matrixLookAt(state._viewMatrix, 3, 4, 0, 0, 0, 0, 0, 0, 2);
    Exact view = {-0.8, 0, 0.6, 0, 0.6, 0, 0.8, 0, 0, 1, 0, 0, 0, 0, -5, 1};
    expectNear(state._viewMatrix, view, 1e-6, "camera");
    state.rotateView(90, 0, 0, 1);
    view = product(view, Exact{0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    matrixIdentity(state._modelMatrix);
    matrixTranslate(state._modelMatrix, 1, 0, 0);
    matrixScale(state._modelMatrix, 3, 3, 3);
    const Exact model = {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 1, 0, 0, 1};
    expectNear(state.computeMvp(), product(std::to_array(state._projectionMatrix), product(view, model)), 1e-4, "all");
}

}  // namespace
}  // namespace zet::test
