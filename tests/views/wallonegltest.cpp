// The two one-pane wall views against rays that the test casts onto a stretched half sphere.

#include "views/panesgl.h"

namespace zet::test {
namespace {

struct WallOneGl : PanesGl {
    void move(float right, float down) { drag(300 - right / 2, 200 - down / 2, 300 + right / 2, 200 + down / 2); }
    // What a camera before the half sphere sees, gone round it to look right and down. `in`: part of the way to it.
    void expectSeen(const std::string& what, DomeCamera camera, double in,
                    const std::function<Wanted(const DomeAngles&)>& colorOf) {
        camera.half = 0;
        camera.wide = 1 + 0.05 * in;
        camera.aspect = 600.0 / 420;
        compareAll(what, [&](double x, double y) { return domeColor(camera, x, y, colorOf); });
    }
    // The lens circle, deep from far and flatter when near; two planes cut off its top and bottom.
    void expectLens(const std::string& what, double eyeZ, double yaw, double pitch) {
        const double in = (6 - eyeZ) / 3, depth = 1.25 - 0.55 * in;
        const DomeCamera camera{.eyeZ = eyeZ, .tilt = -pitch, .side = -yaw, .press = depth};
        expectSeen(what, camera, in, [depth](const DomeAngles& place) -> Wanted {
            const Vec p = place.point();
            const double beyond = 0.8 * p.z * depth + std::fabs(p.y) - 4.8;
            if (std::fabs(beyond) <= 0.1) return std::nullopt;
            return beyond < 0 ? evenColor(place) : Color{};
        });
    }
    // A part of the plain frame straight along the axis, flat from far and bent when near, in an ellipse.
    void expectFrame(const std::string& what, double eyeZ, double yaw, double pitch, Rect part = {0, 0, 480, 320}) {
        const double in = (6.4 - eyeZ) / 7.2;
        const DomeCamera camera{.eyeZ = eyeZ, .tilt = -pitch, .side = -yaw, .press = std::max(0.8 * in, 1e-4)};
        expectSeen(what, camera, in, [&](const DomeAngles& place) -> Wanted {
            const Vec p = place.point();
            const double right = p.x / 12, down = -1.6 * p.y / 12;
            const double onEllipse = std::sqrt(right * right / 0.079102 + down * down / 0.25) / 1.68;
            const double beyond = std::max({onEllipse - 1, std::fabs(right) - 0.5, std::fabs(down) - 0.5});
            if (std::fabs(beyond) <= 0.01) return std::nullopt;
            if (beyond > 0) return Color{};
            return plain.sample((part.x + (0.5 + right) * part.width) / 480,
                                (part.y + (0.5 + down) * part.height) / 320);
        });
    }

    const Frame plain = smoothFrame(480, 320);
};

TEST_F(WallOneGl, showsTheLensCircleFromFarAndNear) {
    startView(RENDER_MODE_WALL_ONE, 600, 420);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    expectLens("far", 6, 0, 0);
    touch(DCFG_DOUBLE_TAP, 1, 1);
    drawOut();  // 30 steps each
    drawOut();
    expectLens("flown in", 3.05, 0, 0);
    pinch(1.5f, 1);
    move(-160, -200);
    expectLens("to the right and down", 3, 12, 15);
}

TEST_F(WallOneGl, wall180ShowsTheFrameFlatFromFarAndBendsItOnTheWayIn) {
    startView(RENDER_MODE_WALL_180, 600, 420);
    bus.setConfig(DCFG_YUV_FRAME, &plain.record);
    expectFrame("far", 6.4, 0, 0);
    touch(DCFG_TOUCH_DOWN, 300, 200);
    pinch(1.5f, 120);
    expectFrame("halfway", 6.4 - 120 * 0.029925, 0, 0);
    pinch(1.5f, 150);
    shown();
    move(-560, -380);
    expectFrame("to the right and down", -0.8, 42, 28.5);
    EXPECT_EQ(requestsOf([this] { touch(DCFG_TOUCH_UP, 5, 5); }), 1) << "the spring wants its frames";
}

TEST_F(WallOneGl, wall180ShowsTheLensRegionAsItIs) {
    const int region[] = {4000, 6000, 2500, 3000};  // 240 by 192 pixels, from 72, 96
    Frame tilted = smoothFrame(480, 320);
    tilted.record.lensRegion = region;
    startView(RENDER_MODE_WALL_180, 600, 420);
    window->resize(10, 300);  // too narrow to draw
    shown(tilted);
    window->resize(600, 420);
    redraw();
    expectFrame("not squared", 6.4, 0, 0, {72, 96, 240, 192});
}

}  // namespace
}  // namespace zet::test
