#include <GLES2/gl2.h>

#include <atomic>
#include <cmath>
#include <optional>

#include "support/displaytest.h"

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
    bus.unRegistObserver(observer);
}

TEST_F(HalfSphere, LeavesNothingForTheNextView) {
    begin(1, 1);
    std::atomic<int> leftOn = 0;
    beforeSwap([&] {
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
    EXPECT_EQ(leftOn, 0);
}

}  // namespace

}  // namespace zet::test
