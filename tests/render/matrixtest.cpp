// The matrices against the same formulas in double, written out here by hand.

#include "render/matrix.h"

#include <gmock/gmock.h>

#include <array>
#include <bit>
#include <cmath>
#include <string>

namespace zet::test {
namespace {

using namespace ZETShow;
using Matrix = std::array<float, 16>;
using Exact = std::array<double, 16>;

constexpr Exact identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const Matrix some = {1.5f, -2, 3, 0.25f, 0.5f, 4, -1, 2, -3, 0.75f, 2, 1, 5, -6, 7, 0.5f};
const Matrix other = {0.1f, 2, -0.3f, 1, 4, 0.5f, 6, -7, 0.8f, 9, 1, 0.2f, -3, 4, 0.5f, 6};

// Row r of column c stands at 4 * c + r.
Exact product(const auto& a, const auto& b) {
    Exact result = {};
    for (std::size_t c = 0; c < 4; ++c)
        for (std::size_t r = 0; r < 4; ++r)
            for (std::size_t k = 0; k < 4; ++k)
                result[4 * c + r] += static_cast<double>(a[4 * k + r]) * static_cast<double>(b[4 * c + k]);
    return result;
}

// The textbook's rotation about a unit axis, by Rodrigues' formula, of the angle in degrees: column after column.
Exact rodrigues(double degrees, double x, double y, double z) {
    const double a = degrees * M_PI / 180, s = std::sin(a), c = std::cos(a), t = 1 - c;
    const double columns[3][3] = {{t * x * x + c, t * x * y + s * z, t * x * z - s * y},
                                  {t * x * y - s * z, t * y * y + c, t * y * z + s * x},
                                  {t * x * z + s * y, t * y * z - s * x, t * z * z + c}};
    Exact result = identity;
    for (std::size_t i = 0; i < 9; ++i) result[i / 3 * 4 + i % 3] = columns[i / 3][i % 3];
    return result;
}

void expectNear(const float* m, const Exact& expected, double tolerance, const std::string& name) {
    for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(m[i], expected[i], tolerance) << name << " element " << i;
}

TEST(Matrix, multipliesInDoubleAlsoInPlace) {
    Matrix left = some, right = other;
    matrixMultiply(left.data(), left.data(), other.data());
    matrixMultiply(right.data(), some.data(), right.data());
    const Exact exact = product(some, other);
    for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(left[i], static_cast<float>(exact[i])) << i;
    EXPECT_EQ(left, right);
}

TEST(Matrix, turnsByMinusTheAngle) {
    const double n = 1 / std::sqrt(3.0);
    const struct {
        double degrees, x, y, z;
    } cases[] = {{90, 0, 0, 1}, {40, 1, 0, 0}, {-75, 0, 1, 0}, {200, n, n, n}, {123, 0.6, 0, -0.8}};
    for (const auto& [degrees, x, y, z] : cases) {
        Matrix m = some;
        matrixRotate(m.data(), static_cast<float>(degrees), static_cast<float>(x), static_cast<float>(y),
                     static_cast<float>(z));
        // 3.14159 for pi turns short by a millionth of the angle; the elements here reach 7.
        expectNear(m.data(), product(some, rodrigues(-degrees, x, y, z)), 7e-5, std::to_string(degrees));
    }
    Matrix m;
    matrixIdentity(m.data());
    matrixRotate(m.data(), 0, 3, -4, 5);
    expectNear(m.data(), identity, 0, "by nothing");
    matrixRotate(m.data(), 90, 0, 0, 2);
    const float right = std::bit_cast<float>(0x40490FD0) * 90 / 180;
    EXPECT_EQ(m[0], static_cast<float>(std::cos(static_cast<double>(right)))) << "the pi of the views";
    EXPECT_NEAR(m[1], -2, 1e-4) << "the x axis turns to minus y, with the axis as it is";
    EXPECT_NEAR(m[10], 4, 1e-4) << "1 - cos times 2 times 2, plus cos";
}

TEST(Matrix, movesAndScalesAlongItsOwnAxesAndLooksAlong) {
    Matrix m = some;
    matrixTranslate(m.data(), 2, -3, 0.5f);
    expectNear(m.data(), product(some, Exact{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, -3, 0.5, 1}), 1e-5, "moved");
    m = some;
    matrixScale(m.data(), 2, -3, 0.5f);
    expectNear(m.data(), product(some, Exact{2, 0, 0, 0, 0, -3, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1}), 0, "scaled");
    matrixLookAt(m.data(), 0, 0, 1, 0, 0, 0, 0, 1, 0);
    expectNear(m.data(), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 1}, 0, "the flat view's camera");
    // From (3, 4, 0) to the origin with z up: forward (-0.6, -0.8, 0), side (-0.8, 0.6, 0), up (0, 0, 1).
    matrixLookAt(m.data(), 3, 4, 0, 0, 0, 0, 0, 0, 2);
    expectNear(m.data(), {-0.8, 0, 0.6, 0, 0.6, 0, 0.8, 0, 0, 1, 0, 0, 0, 0, -5, 1}, 1e-6, "aslant");
}

TEST(MatrixState, multipliesProjectionViewAndModelAndKeepsTheStack) {
    MatrixState state;
    expectNear(state._projectionMatrix, {}, 0, "a new state");
    state.setFrustum(1, 3, 2, 6, 2, 4);
    expectNear(state._projectionMatrix, {2, 0, 0, 0, 0, 1, 0, 0, 4, 2, -3, -1, 0, 0, -8, 0}, 0, "aside");
    state.setFrustum(-2, 2, -1, 1, 1, 30);
    expectNear(state._projectionMatrix, {0.5, 0, 0, 0, 0, 1, 0, 0, 0, 0, -31.0 / 29, -1, 0, 0, -60.0 / 29, 0}, 1e-7,
               "symmetric");
    matrixLookAt(state._viewMatrix, 1, 2, 3, 0, 0, 0, 0, 1, 0);
    const Exact view = product(std::to_array(state._viewMatrix), rodrigues(-20, 0, 1, 0));
    state.rotateView(20, 0, 1, 0);
    expectNear(state._viewMatrix, view, 1e-5, "view");
    matrixIdentity(state._modelMatrix);
    state.pushMatrix();
    matrixTranslate(state._modelMatrix, 1, 0, 0);
    state.pushMatrix();
    matrixScale(state._modelMatrix, 3, 3, 3);
    const Exact model = {3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 1, 0, 0, 1};
    expectNear(state.computeMvp(), product(std::to_array(state._projectionMatrix), product(view, model)), 1e-5, "mvp");
    state.popMatrix();
    expectNear(state._modelMatrix, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 0, 0, 1}, 0, "inner");
    state.popMatrix();
    expectNear(state._modelMatrix, identity, 0, "outer");
}

}  // namespace
}  // namespace zet::test
