#include <vector>

#include "views/halopicture.h"
#include "views/panesgl.h"
#include "views/runlengthpicture.h"

namespace zet::test {
namespace {

constexpr int width = 420, height = 300;

struct HalfSphere : PanesGl {
    // At the far pose unless it opens.
    void begin(int halo, int stars, int opening = 0) {
        startView(1, width, height);
        const SceneBackdrop scene{halo, stars};
        bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
        bus.setConfig(DCFG_OPENING_FLIGHT, opening);
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        drawOut();
    }
    void expectScreen(double eyeZ, double pitch, double moveY, double moveZ, double yaw, const std::string& what) {
        const DomeCamera camera{eyeZ, 1, pitch, moveY, moveZ, yaw + 180, 180, 0, 1.0 * width / height, 0.97};
        const double blend = std::clamp(0.5 * (eyeZ - 2) / 4.1, 0.0, 0.5);
        compareDome(shown(), {0, 0, width, height}, camera, what, [blend](const DomeAngles& place) {
            const double up = place.b / halfTurn;
            const double cosine = std::cos(up), even = 1 - place.b / 90, sine = 1 - std::sin(up);
            const double radius = blend >= 0.25 ? std::lerp(even, cosine, (blend - 0.25) * 2)
                                                : std::lerp(sine, even, 0.65 + 0.35 * blend / 0.25);
            return colorAt(0.998 * (1 - 0.2 * up) * radius, place.a + 180);
        });
    }
};

TEST_F(HalfSphere, showsTheBowlFromEveryPose) {
    begin(0, 0);
    expectScreen(6.1, 0, 0, 0, 0, "far");
    touch(DCFG_TOUCH_DOWN, 1, 1);
    const double share = 2.25 * 18 / 92.287971;  // of the way from far to low
    drag(0, 0, 200, 200);                        // clockwise
    expectScreen(6.1 - 4.1 * share, -40.5, 3.5770595 * share, -0.23966840 * share, 40.5, "half way, turned");
    drag(0, 0, -300, 1000);
    drawOut();
    expectScreen(2, -92.287971, 3.5770595, -0.23966840, -20.25, "low");
    touch(DCFG_TOUCH_UP, 1, 1);
    for (int i = 0; i < 2; ++i) drawOut();
    expectScreen(2, -45.560596, 1.8790853, 1.3989465, -20.25, "sprung back");
}

TEST_F(HalfSphere, asksForFramesOnlyWhileItMovesByItself) {
    EXPECT_GT(requestsOf([this] { begin(0, 0, 1); }), 30) << "on the flight of 66 frames";
    for (int i = 0; i < 3; ++i) drawOut();
    const AutoRotate turning{1, 1};
    bus.setConfig(DCFG_AUTO_ROTATE, &turning);
    EXPECT_EQ(requestsOf([this] { drawOut(); }), 1) << "this one; a turn alone takes place with the video";
    for (const SceneBackdrop& scene : {SceneBackdrop{0, 1}, {1, 0}}) {
        bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
        EXPECT_GT(requestsOf([this] { drawOut(); }), 25) << "stars " << scene.stars;
    }
}

// Where light lies between the rim and the screen's edge.
struct Glow {
    double side;    // degrees clockwise from the right
    double radius;  // of its brightest place on that side
};

// `light(x, y)` counts from the middle of the screen or the picture, in halves of the screen's height.
template <typename Light>
Glow glowOf(const Light& light) {
    double right = 0, down = 0;
    for (int turn = 0; turn < 360; turn += 2) {
        const double x = std::cos(turn / halfTurn), y = std::sin(turn / halfTurn);
        for (double radius = 0.88; radius < 1; radius += 0.01) {
            right += light(radius * x, radius * y) * x;
            down += light(radius * x, radius * y) * y;
        }
    }
    const double side = std::atan2(down, right);
    double brightest = 0.86;
    const auto at = [&](double radius) { return light(radius * std::cos(side), radius * std::sin(side)); };
    for (double radius = 0.86; radius < 1; radius += 0.005)
        if (at(radius) > at(brightest)) brightest = radius;
    return {side * halfTurn, brightest};
}

TEST_F(HalfSphere, haloGoesRoundOutsideTheRim) {
    // The picture's circle has a radius of 185 of its pixels; it stands 18.5 wide and 7.1 + 12 away.
    const ZETShow::PlanarPicture picture = ZETShow::unpackPicture(ZETShow::haloPicture);
    const double start =
        glowOf([&](double x, double y) {
            const int column = static_cast<int>(240 + x * 191), row = static_cast<int>(240 + y * 191);
            const double luma = picture.plane(0)[480 * row + column];
            const double blueness = picture.plane(1)[240 * (row / 2) + column / 2];
            return std::max(1.1643 * (luma - 16) + 2.017 * (blueness - 128), 0.0);  // limited-range BT.601
        }).side;
    int draws = 0;
    double farthestOff = 0;
    Glow glow{};
    std::vector<GLubyte> pixels(4 * width * height);
    const auto look = [&] {
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        const auto blue = [&](double x, double y) {
            const int column = static_cast<int>(width / 2 + x * height / 2);
            const int row = static_cast<int>(height / 2 - y * height / 2);
            return 1.0 * pixels[static_cast<std::size_t>(4 * (width * row + column) + 2)];
        };
        if (blue(0, 0) == 0) return;  // no picture yet
        glow = glowOf(blue);
        farthestOff = std::max(farthestOff, std::abs(std::remainder(glow.side - start - 0.65 * ++draws, 360)));
    };
    {
        const SwapHook hook(look);
        begin(1, 0);
    }
    EXPECT_GT(draws, 25);
    EXPECT_LT(farthestOff, 1.5);
    EXPECT_NEAR(glow.radius, 18.5 / 19.1, 0.02);
}

TEST_F(HalfSphere, starsStandOutsideTheBowl) {
    begin(0, 1);
    const Picture screen = shown();
    int dim = 0, white = 0;
    for (int i = 0; i < width * height; ++i) {
        const Color& color = screen.pixels[static_cast<std::size_t>(i)];
        if (std::hypot(i % width + 0.5 - width / 2, i / width + 0.5 - height / 2) < 150 || color.b < 40) continue;
        ASSERT_EQ(color.r, color.g);
        dim += std::abs(color.b / color.r - 0.5 / 0.4) < 0.04;
        white += std::abs(color.b / color.r - 1 / 0.9) < 0.04;
    }
    EXPECT_GT(dim, 20);
    EXPECT_GT(white, 20);
}

}  // namespace
}  // namespace zet::test
