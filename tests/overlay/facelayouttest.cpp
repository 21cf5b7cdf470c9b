#include "overlay/facelayout.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>

#include "zet/records.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ZETShow::FaceBox;
using ZETShow::FaceInfo;
using ZETShow::FaceLines;

TEST(FaceLayout, boxIsTwoFifthsLarger) {
    const struct {
        const char* name;
        int x, y, width, height, frameWidth, frameHeight;
        double left, top, right, bottom;
    } cases[] = {
        {"in the middle", 500, 300, 100, 100, 1000, 1000, -0.04, 0.44, 0.24, 0.16},
        {"the whole of a wide frame", 0, 0, 1920, 1080, 1920, 1080, -1.4, 1.4, 1.4, -1.4},
        {"at the top left corner", 0, 0, 10, 20, 100, 200, -1.04, 1.04, -0.76, 0.76},
        {"outside", -300, 1200, 100, 100, 1000, 1000, -1.64, -1.36, -1.36, -1.64},
        {"no size", 500, 250, 0, 0, 1000, 500, 0, 0, 0, 0},
        {"mirrored", 600, 400, -100, -100, 1000, 1000, 0.24, 0.16, -0.04, 0.44},
    };
    for (const auto& c : cases) {
        const FaceBox box({"", 0, 0, c.x, c.y, c.width, c.height}, c.frameWidth, c.frameHeight);
        EXPECT_NEAR(box.left, c.left, 1e-6) << c.name;
        EXPECT_NEAR(box.top, c.top, 1e-6) << c.name;
        EXPECT_NEAR(box.right(), c.right, 1e-6) << c.name;
        EXPECT_NEAR(box.bottom(), c.bottom, 1e-6) << c.name;
    }
    EXPECT_TRUE(std::isfinite(FaceBox({"", 0, 0, INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 2, 2).right()));
}

TEST(FaceLayout, linesStandBesideTheMiddle) {
    const FaceInfo face{"Ada", -1, UINT_MAX, 500, 300, 100, 100};
    const FaceInfo nameless{"", 0, 0, 500, 300, 100, 100};
    const FaceBox box(face, 1000, 1000);  // its middle at y = 0.3
    const auto texts = [&box](const FaceInfo& of, int option, double y) {
        const FaceLines lines(of, box, option);
        EXPECT_NEAR(lines.x, 0.25, 1e-6) << option;
        EXPECT_TRUE(lines.count == 0 || std::abs(lines.y - y) < 1e-6) << option << ": " << lines.y;
        return std::vector<std::string>(lines.text, lines.text + lines.count);
    };
    EXPECT_THAT(texts(face, 15, 0.35), ElementsAre("Ada", "male", "4294967295"));
    EXPECT_THAT(texts(nameless, 14, 0.3), ElementsAre("female", "0"));
    EXPECT_THAT(texts(face, FACE_NAME | FACE_AGE, 0.3), ElementsAre("Ada", "4294967295"));
    EXPECT_THAT(texts(face, FACE_GENDER, 0.25), ElementsAre("male"));
    EXPECT_THAT(texts(nameless, FACE_NAME | FACE_BOX, 0), IsEmpty());
}

}  // namespace
}  // namespace zet::test
