#include <gtest/gtest.h>

#include "views/parts/camera.h"

namespace zet::ZETShow {
namespace {

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
