#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

#include "views/parts/angles.h"
#include "views/parts/camera.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {
namespace {

TEST(Dome, cellsMeetAndTheShapeIsTold) {
    const Dome dome = makeDome(onSphere);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(Dome::_angleStep), 0x3d4104f0u);
    ASSERT_EQ(dome._vertexCount, 134 * 34 * 6);
    ASSERT_EQ(dome._vertices.size(), 82008u);
    ASSERT_EQ(dome._texCoords.size(), 54672u);
    const auto coord = [&dome](int column, int row, int corner) {
        const float* const c = &dome._texCoords[static_cast<std::size_t>(((column * 34 + row) * 6 + corner) * 2)];
        return std::pair(c[0], c[1]);
    };
    EXPECT_EQ(coord(0, 0, 0), std::pair(0.0f, 0.0f));
    EXPECT_EQ(coord(5, 7, 1), coord(6, 7, 0));
    EXPECT_EQ(coord(5, 7, 2), coord(5, 8, 0));
    EXPECT_EQ(coord(5, 7, 5), coord(6, 8, 0));
    EXPECT_EQ(coord(5, 7, 3), coord(5, 7, 2));
    EXPECT_EQ(coord(5, 7, 4), coord(5, 7, 1));
    // The last column and row reach past the full and the quarter circle, by less than a cell of 2.7 degrees.
    EXPECT_NEAR(coord(133, 0, 1).first, 134 * 0.04712385, 1e-5);
    EXPECT_NEAR(coord(0, 33, 2).second, 34 * 0.04712385, 1e-6);
}

TEST(Dome, pointsOfTheSphere) {
    struct Case {
        double a, b;
        float x, y, z;
    };
    const double quarter = M_PI / 2;
    for (const Case& c : {Case{0, 0, 0, -6, 0}, Case{quarter, 0, -6, 0, 0}, Case{2 * quarter, 0, 0, 6, 0},
                          Case{1, quarter, 0, 0, -6}, Case{quarter, M_PI / 6, -5.196152f, 0, -3}}) {
        const DomePoint point = onSphere(c.a, c.b);
        EXPECT_NEAR(point.position[0], c.x, 1e-6) << c.a << ' ' << c.b;
        EXPECT_NEAR(point.position[1], c.y, 1e-6) << c.a << ' ' << c.b;
        EXPECT_NEAR(point.position[2], c.z, 1e-6) << c.a << ' ' << c.b;
        EXPECT_NEAR(onFlattenedSphere(c.a, c.b).position[2], c.z * 0.97, 1e-6) << c.a << ' ' << c.b;
    }
}

TEST(Angles, wrapsDiffer) {
    struct Case {
        float angle, dropped, both, turn;
    };
    const Case cases[] = {
        {0.0f, 0.0f, 0.0f, 0.0f},       {-0.25f, -0.25f, -0.25f, 359.75f}, {360.0f, 0.0f, 0.0f, 0.0f},
        {-360.0f, 0.0f, 0.0f, 0.0f},    {725.5f, 5.5f, 365.5f, 365.5f},    {-725.5f, -5.5f, -365.5f, -365.5f},
        {-1e-9f, -1e-9f, -1e-9f, 0.0f},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(dropWholeTurns(c.angle), c.dropped) << c.angle;
        EXPECT_EQ(foldIntoBothTurns(c.angle), c.both) << c.angle;
        EXPECT_EQ(foldIntoTurn(c.angle), c.turn) << c.angle;
    }
    for (const float huge : {3e9f, -3e9f, std::numeric_limits<float>::max()}) {
        EXPECT_LT(std::fabs(dropWholeTurns(huge)), 360.0f) << huge;
    }
}

TEST(Angles, sumsStayFinite) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(heldSum(1.5f, -0.25f), 1.25f);
    EXPECT_EQ(heldSum(10.0f, infinity), 16777216.0f);
    EXPECT_EQ(heldSum(16777216.0f, -infinity), -16777216.0f);
}

TEST(SurfaceSize, asksForALayoutWhereOneIsDue) {
    struct Step {
        const char* what;
        int width, height;
        bool layOut, stands;
    };
    const Step steps[] = {
        {"nothing yet", 0, 0, false, false},
        {"one side of 0", 0, 500, false, false},
        {"too small", 10, 500, false, false},
        {"the least", 11, 11, true, true},
        {"again", 11, 11, false, true},
        {"wider", 12, 11, true, true},
        {"a side of 0 changes nothing", 0, 11, false, true},
        {"under 11 pixels", 12, 10, false, false},
        {"back at the old size", 12, 11, true, true},
        {"negative", -5, 40, false, false},
    };
    SurfaceSize size;
    for (const Step& step : steps) {
        EXPECT_EQ(size.changeTo(step.width, step.height), step.layOut) << step.what;
        EXPECT_EQ(size._sized != 0, step.stands) << step.what;
    }
    EXPECT_EQ(size._lastWidth, 12);
    EXPECT_EQ(size._lastHeight, 11);
}

}  // namespace
}  // namespace zet::ZETShow
