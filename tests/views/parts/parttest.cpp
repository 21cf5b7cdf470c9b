#include <gtest/gtest.h>

#include "views/parts/angles.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {
namespace {

TEST(Angles, wrapsDiffer) {
    const struct {
        float angle, dropped, both, turn;
    } cases[] = {
        {-0.25f, -0.25f, -0.25f, 359.75f}, {360.0f, 0.0f, 0.0f, 0.0f},         {-360.0f, 0.0f, 0.0f, 0.0f},
        {725.5f, 5.5f, 365.5f, 365.5f},    {-725.5f, -5.5f, -365.5f, -365.5f}, {-1e-9f, -1e-9f, -1e-9f, 0.0f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(dropWholeTurns(c.angle), c.dropped) << c.angle;
        EXPECT_EQ(foldIntoBothTurns(c.angle), c.both) << c.angle;
        EXPECT_EQ(foldIntoTurn(c.angle), c.turn) << c.angle;
    }
}

TEST(SurfaceSize, asksForALayoutWhereOneIsDue) {
    const struct {
        int width, height;
        bool layOut, stands;
    } steps[] = {
        {0, 500, false, false}, {11, 11, true, true},   {11, 11, false, true}, {12, 11, true, true},
        {0, 11, false, true},   {12, 10, false, false}, {12, 11, true, true},  {-5, 40, false, false},
    };
    SurfaceSize size;
    for (const auto& step : steps) {
        EXPECT_EQ(size.changeTo(step.width, step.height), step.layOut) << step.width << ' ' << step.height;
        EXPECT_EQ(size._sized != 0, step.stands) << step.width << ' ' << step.height;
    }
}

}  // namespace
}  // namespace zet::ZETShow
