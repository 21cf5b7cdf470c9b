#include <vector>

#include "views/panesgl.h"

namespace zet::test {
namespace {

constexpr int width = 420, height = 300;

struct HalfSphere : PanesGl {
    // At the far pose unless it opens.
    void begin(int halo, int stars, int opening = 0) {
        startView(RENDER_MODE_HALF_SPHERE, width, height);
        const SceneBackdrop scene{halo, stars};
        bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
        bus.setConfig(DCFG_OPENING_FLIGHT, opening);
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        drawOut();
    }
    void expectScreen(double eyeZ, double pitch, double moveY, double moveZ, double yaw, const std::string& what) {
        const DomeCamera camera{eyeZ, 1, pitch, moveY, moveZ, yaw + 180, 180, 0, 1.0 * width / height, 0.97};
        const double blend = std::clamp(0.5 * (eyeZ - 2) / 4.1, 0.0, 0.5);
        const auto colorOf = [blend](const DomeAngles& place) {
            const double up = place.b / halfTurn;
            const double cosine = std::cos(up), even = 1 - place.b / 90, sine = 1 - std::sin(up);
            const double radius = blend >= 0.25 ? std::lerp(even, cosine, (blend - 0.25) * 2)
                                                : std::lerp(sine, even, 0.65 + 0.35 * blend / 0.25);
            return colorAt(0.998 * (1 - 0.2 * up) * radius, place.a + 180);
        };
        compareAll(what, [&](double x, double y) { return domeColor(camera, x, y, colorOf); });
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
}

TEST_F(HalfSphere, asksForFramesOnlyWhileItMovesByItself) {
    EXPECT_GT(requestsOf([this] { begin(0, 0, 1); }), 30) << "on the flight of 66 frames";
    for (int i = 0; i < 3; ++i) drawOut();
    const AutoRotate turning{1, 1};
    bus.setConfig(DCFG_AUTO_ROTATE, &turning);
    EXPECT_EQ(requestsOf([this] { redraw(); }), 1) << "this one; a turn alone takes place with the video";
    for (const SceneBackdrop& scene : {SceneBackdrop{0, 1}, {1, 0}}) {
        bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
        EXPECT_GT(requestsOf([this] { drawOut(); }), 25) << "stars " << scene.stars;
    }
}

TEST_F(HalfSphere, haloGoesRoundOutsideTheRim) {
    std::vector<double> sides;  // of the light in each draw, degrees clockwise from the right
    double brightest = 0;       // the radius where it is, in halves of the height
    const auto look = [&] {
        std::vector<GLubyte> pixels(4 * width * height);
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        if (pixels[4 * (width * height / 2 + width / 2)] == 0) return;  // no picture yet
        double right = 0, down = 0, most = 0;
        for (int i = 0; i < width * height; ++i) {
            const double x = (i % width - width / 2) * 2.0 / height, y = (height / 2 - i / width) * 2.0 / height;
            const double radius = std::hypot(x, y), light = pixels[static_cast<std::size_t>(4 * i + 2)];
            if (radius < 0.88 || radius > 1) continue;
            right += light * x;
            down += light * y;
            if (light > most) brightest = radius;
            most = std::max(light, most);
        }
        sides.push_back(std::atan2(down, right) * halfTurn);
    };
    {
        const SwapHook hook(look);
        begin(1, 0);
    }
    ASSERT_GT(sides.size(), 25);
    EXPECT_NEAR(sides[0], 15, 15) << "brightest on the right and the lower right";
    for (std::size_t draw = 1; draw < sides.size(); ++draw)
        EXPECT_NEAR(std::remainder(sides[draw] - sides[0] - 0.65 * static_cast<double>(draw), 360), 0, 1.5) << draw;
    EXPECT_NEAR(brightest, 18.5 / 19.1, 0.02) << "a circle of 18.5, seen from 7.1 + 12";
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
