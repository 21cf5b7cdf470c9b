#include <GLES2/gl2.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "support/displaytest.h"
#include "views/halopicture.h"
#include "views/runlengthpicture.h"

namespace zet::test {

namespace {

constexpr int width = 420;
constexpr int height = 300;
constexpr double degree = M_PI / 180;

struct Vec {
    double x;
    double y;
    double z;
};

// About the axis, anticlockwise for one who looks against it.
Vec turnAboutX(const Vec& v, double angle) {
    const double c = std::cos(angle * degree);
    const double s = std::sin(angle * degree);
    return {v.x, c * v.y - s * v.z, s * v.y + c * v.z};
}

Vec turnAboutZ(const Vec& v, double angle) {
    const double c = std::cos(angle * degree);
    const double s = std::sin(angle * degree);
    return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

struct Pose {
    double eyeZ;
    double pitch;
    double moveY;
    double moveZ;
    double yaw;
    double farEyeZ;
};

// Where the ray through a pixel's centre meets the bowl: one that misses it gives nothing, one that meets it twice
// `twice`.
struct Hit {
    Vec point;
    bool twice;
};

std::optional<Hit> hitThrough(double px, double py, const Pose& pose) {
    // From the screen back into the bowl: each step undoes one of the scene's, the last one first.
    const auto undo = [&pose](Vec v, double weight) {
        v = turnAboutZ(v, 180);
        v = turnAboutX(v, pose.pitch);
        v = {v.x, v.y - weight * pose.moveY, v.z - weight * pose.moveZ};
        return turnAboutZ(v, pose.yaw + 180);
    };
    const double aspect = static_cast<double>(width) / height;
    const Vec eye = undo({0, 0, pose.eyeZ}, 1);
    const Vec ray = undo({(2 * px / width - 1) * aspect, 1 - 2 * py / height, -1}, 0);
    // The bowl is a sphere pressed to 0.97 of its depth.
    const double press = 0.97;
    const double a = ray.x * ray.x + ray.y * ray.y + ray.z * ray.z / press / press;
    const double b = eye.x * ray.x + eye.y * ray.y + eye.z * ray.z / press / press;
    const double c = eye.x * eye.x + eye.y * eye.y + eye.z * eye.z / press / press - 36;
    if (b * b < a * c) return std::nullopt;
    std::optional<Hit> hit;
    for (const double root : {-1.0, 1.0}) {
        const double way = (-b + root * std::sqrt(b * b - a * c)) / a;
        const Vec point = {eye.x + way * ray.x, eye.y + way * ray.y, eye.z + way * ray.z};
        if (way > 1 && point.z <= 0) hit = Hit{point, hit.has_value()};
    }
    return hit;
}

Color colorAt(const Vec& point, const Pose& pose, const Frame& frame) {
    const double around = std::atan2(-point.x, -point.y);
    const double up = std::asin(std::min(-point.z / 0.97 / 6, 1.0));
    const double inward = 0.998 * (1 - 0.2 * up);
    const double cosine = inward * std::cos(up);
    const double even = inward * (1 - up / (M_PI / 2));
    const double sine = inward * (1 - std::sin(up));
    const double blend = std::clamp(0.5 * (pose.eyeZ - 2) / (pose.farEyeZ - 2), 0.0, 0.5);
    const double radius =
        blend >= 0.25 ? std::lerp(even, cosine, (blend - 0.25) * 2) : std::lerp(sine, even, 0.65 + 0.35 * blend / 0.25);
    return frame.sample(0.5 - radius * std::sin(around) / 2, 0.5 + radius * std::cos(around) / 2);
}

class HalfSphere : public DisplayTest {
protected:
    // At the far pose, on the clear colour.
    void begin(int backdrop = 0, int stars = 0) {
        bus.setConfig(DCFG_RENDER_MODE, 1);
        start(width, height);
        const SceneBackdrop scene = {backdrop, stars};
        bus.setConfig(DCFG_SCENE_BACKDROP, &scene);
        bus.setConfig(DCFG_OPENING_FLIGHT, 0);
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        drawOut();
    }
    void drag(float right, float down) {
        DragPoints points = {0, 0, right, down};
        bus.setConfig(DCFG_DRAG, &points);
    }
    void tap(float x, float y) {
        TouchPoint point = {x, y};
        bus.setConfig(DCFG_DOUBLE_TAP, &point);
    }
    void fly() {
        drawOut();
        drawOut();
    }

    void expectScreen(const Pose& pose) {
        const Picture screen = shown();
        int painted = 0;
        int clear = 0;
        for (int y = 4; y < height; y += 7) {
            for (int x = 4; x < width; x += 7) {
                const std::optional<Hit> hit = hitThrough(x + 0.5, y + 0.5, pose);
                // Two layers are painted in the mesh's order; the rim's pixels belong to both sides.
                if (hit && (hit->twice || hit->point.z > -0.15)) continue;
                if (!hit && (hitThrough(x + 0.5, y + 3.5, pose) || hitThrough(x + 0.5, y - 2.5, pose) ||
                             hitThrough(x + 3.5, y + 0.5, pose) || hitThrough(x - 2.5, y + 0.5, pose))) {
                    continue;
                }
                const Color expected = hit ? colorAt(hit->point, pose, frame) : Color{};
                ++(hit ? painted : clear);
                // The mesh is flat between its vertices, and the rasteriser filters in 8 bits.
                ASSERT_TRUE(near(screen.at(x, y), expected, 3))
                    << x << ' ' << y << ": " << screen.at(x, y) << " for " << expected;
            }
        }
        EXPECT_GT(painted, 700);
        EXPECT_TRUE(clear > 200 || pose.pitch == nearPitch);  // there the wall fills the screen
    }

    static constexpr double nearPitch = -45.560596;
    const Frame frame = smoothFrame(256, 256);
};

TEST_F(HalfSphere, FarShowsTheBowlUpright) {
    begin();
    expectScreen({6.1, 0, 0, 0, 0, 6.1});
    drag(200, 0);  // clockwise
    expectScreen({6.1, 0, 0, 0, 40.5, 6.1});
}

TEST_F(HalfSphere, NearLooksAlongTheWall) {
    begin();
    tap(width - 1, height / 2);
    fly();
    expectScreen({2, nearPitch, 1.8790853, 1.3989465, -80, 6.1});
}

TEST_F(HalfSphere, LowLooksAtTheRim) {
    begin();
    TouchPoint finger = {1, 1};
    bus.setConfig(DCFG_TOUCH_DOWN, &finger);
    drag(-100, 1000);
    drawOut();
    expectScreen({2, -92.287971, 3.5770595, -0.23966840, -20.25, 6.1});
    bus.setConfig(DCFG_TOUCH_UP, &finger);
    fly();
    expectScreen({2, nearPitch, 1.8790853, 1.3989465, -20.25, 6.1});
}

TEST_F(HalfSphere, HalfwayBlendsTheProfiles) {
    begin();
    TouchPoint finger = {1, 1};
    bus.setConfig(DCFG_TOUCH_DOWN, &finger);
    const double share = 2.25 * 18 / 92.287971;  // of the way from far to low
    drag(0, 200);
    expectScreen({6.1 - 4.1 * share, -40.5, 3.5770595 * share, -0.23966840 * share, 0, 6.1});
}

TEST_F(HalfSphere, AsksForFramesOnlyWhileTheSceneMoves) {
    begin();
    std::atomic<int> requests = 0;
    void* observer = bus.registObserver(
        DCFG_RENDER_REQUEST, [&](DisplayConfig&, DisplayConfigUserData&) { return ++requests, 0; }, nullptr,
        DCFG_FLAG_EVENT);
    drawOut();
    EXPECT_EQ(requests, 1) << "the test's own";
    const AutoRotate turning = {1, 1.0f};
    bus.setConfig(DCFG_AUTO_ROTATE, &turning);
    drawOut();
    EXPECT_EQ(requests, 2);
    const SceneBackdrop stars = {0, 1};
    bus.setConfig(DCFG_SCENE_BACKDROP, &stars);
    drawOut();
    EXPECT_GE(requests, 30);
    stop();
    bus.unRegistObserver(observer);
}

// Where light lies between the rim and the screen's edge, degrees clockwise from the right.
double brightSide(const std::function<double(double x, double y)>& light) {
    double right = 0;
    double down = 0;
    for (int turn = 0; turn < 360; turn += 2) {
        for (double radius = 0.88; radius < 1; radius += 0.01) {
            const double x = std::cos(turn * degree);
            const double y = std::sin(turn * degree);
            const double value = light(radius * x, radius * y);
            right += value * x;
            down += value * y;
        }
    }
    return std::atan2(down, right) / degree;
}

TEST_F(HalfSphere, HaloGoesRoundOutsideTheRim) {
    // The picture's circle has a radius of 185 of its pixels; it stands 18.5 wide and 7.1 + 12 away.
    const ZETShow::PlanarPicture picture = ZETShow::unpackPicture(ZETShow::haloPicture);
    const double scale = 10 * 19.1;
    const double start = brightSide([&](double x, double y) {
        const int column = std::clamp(static_cast<int>(240 + x * scale), 0, 479);
        const int row = std::clamp(static_cast<int>(240 + y * scale), 0, 479);
        const double luma = picture.plane(0)[480 * row + column];
        const double blueness = picture.plane(1)[240 * (row / 2) + column / 2];
        return std::max(1.1643 * (luma - 16) + 2.017 * (blueness - 128), 0.0);  // limited-range BT.601
    });
    int draws = 0;
    double farthestOff = 0;
    double radius = 0;  // of the brightest light on the bright side
    std::vector<GLubyte> pixels(4 * width * height);
    const auto look = [&] {
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        const auto blue = [&](double x, double y) {
            const int column = static_cast<int>(width / 2 + x * height / 2);
            const int row = static_cast<int>(height / 2 - y * height / 2);
            return static_cast<double>(pixels[static_cast<std::size_t>(4 * (width * row + column) + 2)]);
        };
        if (blue(0, 0) == 0) return;  // no picture yet
        const double side = brightSide(blue);
        const double off = side - (start + 0.65 * ++draws);
        farthestOff = std::max(farthestOff, std::abs(std::remainder(off, 360)));
        double brightest = 0;
        for (double r = 0.86; r < 1; r += 0.005) {
            const double value = blue(r * std::cos(side * degree), r * std::sin(side * degree));
            if (value > brightest) radius = r;
            brightest = std::max(brightest, value);
        }
    };
    {
        const SwapHook hook(look);
        begin(1, 0);
        drawOut();
    }
    EXPECT_GT(draws, 50);
    EXPECT_LT(farthestOff, 1.5);
    EXPECT_NEAR(radius, 18.5 / 19.1, 0.02);
}

TEST_F(HalfSphere, StarsStandOutsideTheBowl) {
    begin(0, 1);
    const Picture screen = shown();
    int dim = 0;
    int white = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Color& color = screen.at(x, y);
            if (std::hypot(x + 0.5 - width / 2, y + 0.5 - height / 2) < 150 || color.b < 40) continue;
            ASSERT_EQ(color.r, color.g);
            dim += std::abs(color.b / color.r - 0.5 / 0.4) < 0.04;
            white += std::abs(color.b / color.r - 1 / 0.9) < 0.04;
        }
    }
    EXPECT_GT(dim, 20);
    EXPECT_GT(white, 20);
}

TEST_F(HalfSphere, LeavesNothingForTheNextView) {
    begin(1, 1);
    std::atomic<int> leftOn = 0;
    const SwapHook hook([&] {
        GLint attributes = 0;
        glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &attributes);
        for (GLuint i = 0; i < static_cast<GLuint>(attributes); ++i) {
            GLint enabled = 0;
            glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
            leftOn += enabled;
        }
        leftOn += glIsEnabled(GL_DEPTH_TEST) + glIsEnabled(GL_BLEND);
        leftOn += glGetError() != GL_NO_ERROR;
    });
    redraw();
    stop();
    EXPECT_EQ(leftOn, 0);
}

}  // namespace

}  // namespace zet::test
