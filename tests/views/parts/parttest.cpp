#include <gtest/gtest.h>

#include <limits>

#include "views/parts/angles.h"
#include "views/parts/camera.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {
namespace {

TEST(Angles, wrapsDiffer) {
    EXPECT_EQ(Dome::_angleStep, 0x1.8209ep-5f);
    struct Case {
        float angle, dropped, both, turn;
    };
    const Case cases[] = {
        {-0.25f, -0.25f, -0.25f, 359.75f}, {360.0f, 0.0f, 0.0f, 0.0f},         {-360.0f, 0.0f, 0.0f, 0.0f},
        {725.5f, 5.5f, 365.5f, 365.5f},    {-725.5f, -5.5f, -365.5f, -365.5f}, {-1e-9f, -1e-9f, -1e-9f, 0.0f},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(dropWholeTurns(c.angle), c.dropped) << c.angle;
        EXPECT_EQ(foldIntoBothTurns(c.angle), c.both) << c.angle;
        EXPECT_EQ(foldIntoTurn(c.angle), c.turn) << c.angle;
    }
    EXPECT_LT(std::fabs(dropWholeTurns(std::numeric_limits<float>::max())), 360.0f);
}

TEST(Angles, sumsStayFinite) {
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(heldSum(10.0f, infinity), 16777216.0f);
    EXPECT_EQ(heldSum(16777216.0f, -infinity), -16777216.0f);
}

TEST(SurfaceSize, asksForALayoutWhereOneIsDue) {
    struct Step {
        int width, height;
        bool layOut, stands;
    };
    SurfaceSize size;
    for (const Step& step : {Step{0, 500, false, false},
                             {11, 11, true, true},
                             {11, 11, false, true},
                             {12, 11, true, true},
                             {0, 11, false, true},
                             {12, 10, false, false},
                             {12, 11, true, true},
                             {-5, 40, false, false}}) {
        EXPECT_EQ(size.changeTo(step.width, step.height), step.layOut) << step.width << ' ' << step.height;
        EXPECT_EQ(size._sized != 0, step.stands) << step.width << ' ' << step.height;
    }
}

}  // namespace
}  // namespace zet::ZETShow
