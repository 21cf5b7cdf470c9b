// The two one-pane wall views against rays that the test casts onto a stretched half sphere.

#include "views/panesgl.h"

namespace zet::test {
namespace {

struct WallOneGl : PanesGl {
    void move(float right, float down) { drag(300 - right / 2, 200 - down / 2, 300 + right / 2, 200 + down / 2); }
    void pinch(float factor, int times) {
        for (int i = 0; i < times; ++i) bus.setConfig(DCFG_PINCH, factor);
    }

    // Compares the window with what a camera before the half sphere sees, gone round it to look right and down, on
    // black. `paint(place, p, wanted)`: the colour at a place, in dome units `p`; false at an edge.
    template <typename Paint>
    void compareSeen(const std::string& what, const DomeCamera& camera, double widening, const Paint& paint) {
        const Picture picture = shown();
        const double aspect = 1.0 * picture.width / picture.height;
        const auto unstretched = [&camera, widening](const Vec& v) {
            const Vec onDome = camera.toDome(v);
            return Vec{onDome.x / widening, onDome.y, onDome.z};
        };
        compare(picture, {0, 0, picture.width, picture.height}, what, [&](double x, double y, Color& wanted) {
            const Vec eye = unstretched({});
            const DomeAngles place = hitDome(eye, unstretched({x * aspect, y, -1}) + -1.0 * eye);
            const double a = place.a / halfTurn, b = place.b / halfTurn;
            const Vec p = -6.0 * Vec{std::sin(a) * std::cos(b), std::cos(a) * std::cos(b), std::sin(b)};
            if (std::fabs(place.b) < 1) return false;  // the rim's edge
            return !(place.b > 0) || paint(place, p, wanted);
        });
    }

    // The lens circle, deep from far and flatter when near; two planes cut off its top and bottom.
    void expectLens(const std::string& what, double eyeZ, double yaw, double pitch,
                    const std::function<Color(const DomeAngles&)>& colorOf = evenColor) {
        const double in = (6 - eyeZ) / 3, depth = 1.25 - 0.55 * in;
        const DomeCamera camera{.eyeZ = eyeZ, .tilt = -pitch, .half = 0, .side = -yaw, .press = depth};
        const auto paint = [&](const DomeAngles& place, const Vec& p, Color& wanted) {
            const double beyond = 0.8 * p.z * depth + std::fabs(p.y) - 4.8;
            if (beyond < 0) wanted = colorOf(place);
            return std::fabs(beyond) > 0.1;
        };
        compareSeen(what, camera, 1 + 0.05 * in, paint);
    }
    // A part of the plain frame straight along the axis, flat from far and bent when near, in an ellipse.
    void expectFrame(const std::string& what, double eyeZ, double yaw, double pitch, Rect part = {0, 0, 480, 320}) {
        const double in = (6.4 - eyeZ) / 7.2, depth = std::max(0.8 * in, 1e-4);
        const DomeCamera camera{.eyeZ = eyeZ, .tilt = -pitch, .half = 0, .side = -yaw, .press = depth};
        const auto paint = [&](const DomeAngles&, const Vec& p, Color& wanted) {
            const double s = 0.5 + p.x / 12, t = 0.5 - 1.6 * p.y / 12;
            const double onEllipse = std::sqrt((s - 0.5) * (s - 0.5) / 0.079102 + (t - 0.5) * (t - 0.5) / 0.25) / 1.68;
            const double beyond = std::max({onEllipse - 1, std::fabs(s - 0.5) - 0.5, std::fabs(t - 0.5) - 0.5});
            if (beyond < 0) wanted = plain.sample((part.x + s * part.width) / 480, (part.y + t * part.height) / 320);
            return std::fabs(beyond) > 0.01;
        };
        compareSeen(what, camera, 1 + 0.05 * in, paint);
    }

    const Frame plain = smoothFrame(480, 320);
};

TEST_F(WallOneGl, mode9ShowsTheLensCircleFromFarAndNear) {
    startView(9, 600, 420);
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    expectLens("far", 6, 0, 0);
    touch(DCFG_DOUBLE_TAP, 1, 1);
    drawOut();  // 30 steps each
    drawOut();
    expectLens("flown in", 3.05, 0, 0);
    pinch(1.5f, 1);
    move(240, 0);
    expectLens("to the left", 3, -18, 0);
    move(-400, -200);
    expectLens("to the right and down", 3, 12, 15);
    EXPECT_EQ(requestsOf([this] { touch(DCFG_TOUCH_UP, 5, 5); }), 0) << "a lifted finger moves nothing";
}

TEST_F(WallOneGl, mode10ShowsTheFrameFlatFromFarAndBendsItOnTheWayIn) {
    startView(10, 600, 420);
    bus.setConfig(DCFG_YUV_FRAME, &plain.record);
    expectFrame("far", 6.4, 0, 0);
    touch(DCFG_TOUCH_DOWN, 300, 200);
    pinch(1.5f, 120);
    expectFrame("halfway", 6.4 - 120 * 0.029925, 0, 0);
    pinch(1.5f, 150);
    shown();
    move(400, 0);
    expectFrame("inside, to the left", -0.8, -30, 0);
    move(-400, -380);
    move(-560, 0);
    expectFrame("to the right and down", -0.8, 42, 28.5);
    EXPECT_EQ(requestsOf([this] { touch(DCFG_TOUCH_UP, 5, 5); }), 1);
    for (int i = 0; i < 4; ++i) drawOut();
    expectFrame("sprung back", -0.8, 37.2, 0.6);
}

TEST_F(WallOneGl, showTheLensRegionOnSurfacesOfAnySizeAndLeaveNothingOn) {
    const int region[] = {4000, 6000, 2500, 3000};  // 240 by 192 pixels, from 72, 96
    Frame tilted = smoothFrame(480, 320);
    tilted.record.lensRegion = region;
    const auto squared = [this](const DomeAngles& place) {
        const double radius = 0.998 * (1 - place.b / 90), azimuth = (place.a + 180) / halfTurn;
        const double right = radius * std::sin(azimuth), up = radius * std::cos(azimuth);
        return plain.sample((72 + 96 * (1 + right)) / 480, (96 + 96 * (1 - up)) / 320);
    };
    startView(9, 300, 300);
    for (const int mode : {9, 10}) {
        SCOPED_TRACE(mode);
        bus.setConfig(DCFG_RENDER_MODE, mode);
        window->resize(10, 300);  // nothing stands
        shown(tilted);
        window->resize(300, 300);
        redraw();
        if (mode == 9) expectLens("squared", 6, 0, 0, squared);
        if (mode == 10) expectFrame("not squared", 6.4, 0, 0, {72, 96, 240, 192});
        expectNothingLeftOn();
    }
}

}  // namespace
}  // namespace zet::test
