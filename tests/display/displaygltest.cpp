#include "support/displaytest.h"

namespace zet::test {
namespace {

using DisplayGl = DisplayTest;

TEST_F(DisplayGl, showsAFrame) {
    start(320, 240);
    const Frame frame(160, 120, Yuv{120, 90, 170});
    const Picture picture = shown(frame);
    for (int y = 0; y < 240; ++y)
        for (int x = 0; x < 320; ++x)
            ASSERT_TRUE(near(picture.at(x, y), toColor(Yuv{120, 90, 170}), 1)) << x << ' ' << y << picture.at(x, y);
}

}  // namespace
}  // namespace zet::test
