// The two one-pane wall views against rays that the test casts onto a stretched half sphere.

#include <optional>

#include "views/panesgl.h"

namespace zet::test {
namespace {

constexpr int width = 600;
constexpr int height = 420;

// A camera at a distance before the middle of a stretched half sphere, gone round it to look right and down.
struct WallCamera {
    double eyeZ = 0, yaw = 0, pitch = 0;  // degrees
    Vec stretch;

    // The place that a pixel shows, on the half sphere before its stretch, x to the right and y upward. Nothing beside
    // it or where one part of it hides another.
    std::optional<Vec> at(double x, double y) const {
        const Vec eye = back({0, 0, eyeZ});
        const Vec ray = back({x, y, -1});
        if (stretch.z == 0) {  // pressed flat
            const Vec hit = relax(eye + (-eye.z / ray.z) * ray, 1);
            const double depth = 36 - hit.x * hit.x - hit.y * hit.y;
            return depth < 0 ? std::nullopt : std::optional(Vec{hit.x, hit.y, -std::sqrt(depth)});
        }
        const Vec from = relax(eye, stretch.z), towards = relax(ray, stretch.z);
        const double a = dot(towards, towards), b = dot(from, towards), c = dot(from, from) - 36;
        if (b * b < a * c) return std::nullopt;
        const auto hit = [&](int which) { return from + ((which * std::sqrt(b * b - a * c) - b) / a) * towards; };
        const bool twice = c > 0 && hit(-1).z <= 0;
        return hit(1).z > 0 || twice ? std::nullopt : std::optional(hit(1));
    }

private:
    Vec back(const Vec& v) const { return turnY(turnX(v, pitch), yaw); }
    Vec relax(const Vec& v, double depth) const { return {v.x / stretch.x, v.y / stretch.y, v.z / depth}; }
};

// A way from one stretch to another.
Vec between(const Vec& far, const Vec& near, double k) {
    return (1 - k) * far + k * near;
}

struct WallOneGl : PanesGl {
    void move(float right, float down) { drag(300 - right / 2, 200 - down / 2, 300 + right / 2, 200 + down / 2); }
    void pinchIn(int times) {
        for (int i = 0; i < times; ++i) bus.setConfig(DCFG_PINCH, 1.5f);
    }

    // Compares the window with `look(place)`, on black; the pixels around an edge don't count.
    template <typename Look>
    void compareSeen(const std::string& what, const WallCamera& camera, const Look& look) {
        const Picture picture = shown();
        const double w = picture.width, h = picture.height;
        const auto seen = [&](double x, double y) -> std::optional<Color> {
            const auto place = camera.at(x * w / h, y);
            return place ? look(*place) : std::nullopt;
        };
        compare(picture, {0, 0, picture.width, picture.height}, what, [&](double x, double y, Color& wanted) {
            const auto middle = seen(x, y);
            for (const Vec& side : {Vec{6 / w, 0}, Vec{-6 / w, 0}, Vec{0, 6 / h}, Vec{0, -6 / h}}) {
                if (seen(x + side.x, y + side.y).has_value() != middle.has_value()) return false;
            }
            wanted = middle.value_or(Color{});
            return true;
        });
    }

    // A frame with a lens region of 240 by 192 pixels, from 72, 96.
    const Frame plain = smoothFrame(480, 320);
    const int region[4] = {4000, 6000, 2500, 3000};
    Frame tilted = [this] {
        Frame made = smoothFrame(480, 320);
        made.record.lensRegion = region;
        return made;
    }();
};

// The lens circle, deep from far and flatter when near.
struct WallOne : WallOneGl {
    static WallCamera camera(double eyeZ, double yaw = 0, double pitch = 0) {
        return {eyeZ, yaw, pitch, between({1, 1, 1.25}, {1.05, 1, 0.7}, (6 - eyeZ) / 3)};
    }
    // `paint(radius, azimuth)`: what the frame holds there, degrees clockwise from the top.
    template <typename Paint>
    void expectLens(const WallCamera& camera, const std::string& what, const Paint& paint) {
        compareSeen(what, camera, [&](const Vec& p) -> std::optional<Color> {
            if (0.8 * p.z * camera.stretch.z + std::fabs(p.y) > 4.8) return std::nullopt;
            const double up = std::asin(std::min(-p.z / 6, 1.0)) * halfTurn;
            return paint(0.998 * (1 - up / 90), std::atan2(p.x, p.y) * halfTurn);
        });
    }
};

TEST_F(WallOne, showsTheSceneFromFarAndNear) {
    startView(9, width, height);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    expectLens(camera(6), "far", colorAt);
    EXPECT_TRUE(near(window->grab().at(width / 2, 4), {}, 0)) << "the rim, cut off";
    pinchIn(13);
    expectLens(camera(6 - 13 * 0.115425), "halfway", colorAt);
    pinchIn(20);
    expectLens(camera(3), "near", colorAt);
    move(240, 0);
    expectLens(camera(3, -18), "to the left", colorAt);
    move(-400, -200);
    expectLens(camera(3, 12, 15), "to the right and down", colorAt);
    move(0, 380);
    expectLens(camera(3, 12, -13.5), "up", colorAt);
}

TEST_F(WallOne, fliesNearOnADoubleTap) {
    startView(9, width, height);
    shown(frame);
    touch(DCFG_DOUBLE_TAP, 1, 1);
    drawOut();  // 30 steps each
    drawOut();
    expectLens(camera(3.05), "flown in", colorAt);
}

TEST_F(WallOne, takesTheSquaredLensRegion) {
    startView(9, 300, 300);
    shown(tilted);
    expectLens(camera(6), "squared", [this](double radius, double azimuth) {
        const double right = radius * std::sin(azimuth / halfTurn), up = radius * std::cos(azimuth / halfTurn);
        return plain.sample((72 + 96 * (1 + right)) / 480, (96 + 96 * (1 - up)) / 320);
    });
}

// The frame straight along the axis, flat from far and bent when near.
struct WallOne180 : WallOneGl {
    static WallCamera camera(double eyeZ, double yaw = 0, double pitch = 0) {
        return {eyeZ, yaw, pitch, between({1, 1, 0}, {1.05, 1, 0.8}, (6.4 - eyeZ) / 7.2)};
    }
    // What is shown of the frame: pixels from its top left corner.
    void expectFrame(const WallCamera& camera, const std::string& what, const Rect& part = {0, 0, 480, 320}) {
        compareSeen(what, camera, [&](const Vec& p) -> std::optional<Color> {
            const double ds = p.x / 12, dt = -1.6 * p.y / 12;
            const bool inFrame = std::fabs(ds) < 0.5 && std::fabs(dt) < 0.5;
            if (!inFrame || ds * ds / 0.079102 + dt * dt / 0.25 > 1.68 * 1.68) return std::nullopt;
            return plain.sample((part.x + (0.5 + ds) * part.width) / 480, (part.y + (0.5 + dt) * part.height) / 320);
        });
    }
};

TEST_F(WallOne180, isFlatFromFarAndBendsOnTheWayIn) {
    startView(10, width, height);
    bus.setConfig(DCFG_YUV_FRAME, &plain.record);
    expectFrame(camera(6.4), "far");
    const Picture far = window->grab();
    const double unit = height / 2.0 / 6.4;  // of the dome, in pixels there
    const auto isBlack = [&far, unit](double x, double y) {
        const int right = static_cast<int>(width / 2.0 + x * unit), down = static_cast<int>(height / 2.0 - y * unit);
        return near(far.at(right, down), {}, 0);
    };
    EXPECT_FALSE(isBlack(0, 3.6)) << "the top edge in the middle";
    EXPECT_TRUE(isBlack(0, 3.9));
    EXPECT_TRUE(isBlack(-5.9, 0)) << "the left edge in the middle";
    EXPECT_FALSE(isBlack(-5.5, 0));
    EXPECT_TRUE(isBlack(5.5, 3.6)) << "a corner";

    touch(DCFG_TOUCH_DOWN, 300, 200);
    pinchIn(120);
    expectFrame(camera(6.4 - 120 * 0.029925), "halfway");
    pinchIn(150);
    expectFrame(camera(-0.8), "inside");
    move(400, 0);
    expectFrame(camera(-0.8, -30), "to the left");
    move(-400, -380);
    move(-200, 0);
    expectFrame(camera(-0.8, 15, 28.5), "to the right and down");
}

TEST_F(WallOne180, keepsTheShapeOfTheLensRegion) {
    startView(10, width, height);
    shown(tilted);
    expectFrame(camera(6.4), "not squared", {72, 96, 240, 192});
}

TEST_F(WallOne180, springsBackWhenTheFingerLifts) {
    startView(10, width, height);
    shown(plain);
    touch(DCFG_TOUCH_DOWN, 0, 0);
    pinchIn(300);
    shown();
    move(560, 0);
    expectFrame(camera(-0.8, -42), "held");
    touch(DCFG_TOUCH_UP, 0, 0);
    drawOut();
    expectFrame(camera(-0.8, -37.2), "sprung back");
}

// Both views.

TEST_F(WallOneGl, ofLiftedFingersOnlyTheSpringHears) {
    const auto gestures = [this] {
        for (const std::int64_t id : {DCFG_TOUCH_DOWN, DCFG_TOUCH_UP, DCFG_DOUBLE_TAP}) touch(id, 5, 5);
    };
    startView(9, width, height);
    EXPECT_EQ(requestsOf(gestures), 2);
    bus.setConfig(DCFG_RENDER_MODE, 10);
    EXPECT_EQ(requestsOf(gestures), 3);
}

TEST_F(WallOneGl, standThroughSurfacesOfAnySizeAndLeaveNothingOn) {
    startView(9, width, height);
    for (const int mode : {9, 10}) {
        bus.setConfig(DCFG_RENDER_MODE, mode);
        const Picture before = shown(plain);
        window->resize(10, height);
        redraw();
        window->resize(width, 1);
        redraw();
        window->resize(11, 11);
        EXPECT_FALSE(near(shown().at(5, 5), {}, 4)) << mode;
        window->resize(width, height);
        const Picture after = shown();
        for (const auto& [x, y] : {std::pair(300, 200), std::pair(200, 150), std::pair(10, 10)}) {
            EXPECT_TRUE(near(before.at(x, y), after.at(x, y), 0)) << mode << ": " << x << ' ' << y;
        }
        expectNothingLeftOn();
    }
}

}  // namespace
}  // namespace zet::test
