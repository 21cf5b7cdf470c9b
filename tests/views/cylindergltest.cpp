#include <optional>

#include "views/panesgl.h"

namespace zet::test {
namespace {

// A frame of 256 by 256 in which chroma tells every place from every other, and steep waves of luma show a shift of
// two pixels.
Frame wavyFrame() {
    return Frame(256, 256, [](int x, int y) {
        const double wave = 2 * M_PI / 256;
        const double luma = 128 + 25 * std::sin(6 * wave * x) + 25 * std::cos(5 * wave * y);
        return Yuv{static_cast<int>(std::lround(luma)), 95 + 60 * y / 256, 150 - 40 * x / 256};
    });
}

// A place on a shape: clockwise from the viewer's side as seen from above, and the depth under the rim, 0 to 1.
struct Place {
    double bearing, depth;
    bool inside;  // seen on the inner face
};

// The drum or the bowl in axes of its own: x to the viewer's right, y away from the viewer, z up the shape.
struct Shape {
    const char* name;
    int mode;
    double rimZ, height;  // of the axis: where the rim stands, how far the shape reaches down from it
    double roundness;     // k of its surface x^2 + y^2 + k z^2 = 36 under the rim
    double blend, innerRadius;
    double handedness;  // 1: the picture is the right way round on the outside, -1: on the inside
    struct Pose {
        double lean;            // degrees by which the rim tips towards the viewer
        double lift, distance;  // of the eye, from the middle
    } atRest, atLower, atUpper;

    // What a ray meets first.
    std::optional<Place> hit(Vec from, const Vec& direction) const {
        from.z -= rimZ;
        const Vec squashed{direction.x, direction.y, roundness * direction.z};
        const double a = dot(direction, squashed), b = dot(from, squashed);
        const double c = from.x * from.x + from.y * from.y + roundness * from.z * from.z - 36;
        for (const double side : {-1.0, 1.0}) {
            const double way = (-b + side * std::sqrt(b * b - a * c)) / a;  // not a number where the ray passes by
            const Vec place = from + way * direction;
            if (place.z <= 0 && place.z >= -height)
                return Place{std::atan2(place.x, -place.y), -place.z / height, side > 0};
        }
        return std::nullopt;
    }
    Color color(const Frame& frame, const Place& place, double spin) const {
        const double down = std::asin(std::min(place.depth, 1.0)) / (M_PI / 2);
        const double radius = 0.499 * (1 - (1 - innerRadius) * std::lerp(down, place.depth, blend));
        const double bearing = place.bearing - spin / halfTurn;
        return frame.sample(0.5 + handedness * radius * std::sin(bearing), 0.5 - radius * std::cos(bearing));
    }
};

const Shape shapes[] = {
    {"drum", 5, 3.186, 6.372, 0, 0.6, 0.1, 1, {28.307, 0.15243, 22.2}, {29.35, 0.158, 22.2}, {-29.816, -0.1536, 22.2}},
    {"bowl", 6, 2.31, 6.6, 0.826446, 0.4, 0, -1, {36.06, 0.32396, 20.05}, {40.38, 0.378, 20.05}, {-20.06, 0, 18.55}},
};

struct CylinderGl : PanesGl {
    void pinch(float factor) {
        for (int i = 0; i < 100; ++i) bus.setConfig(DCFG_PINCH, factor);
    }
    // The strip as told by hand: clockwise around the lens circle from left to right, from the rim down to the inner
    // fifth. Its ends meet `pan` radians counter-clockwise from the bottom of the circle. It lies in the plane z = 0,
    // 12 by 2.3, seen from `eyeZ` in front of it, with half a right angle from the middle to the upper edge.
    void expectStrip(int width, int height, double pan, double eyeZ, const std::string& what) {
        compare(shown(), {0, 0, width, height}, what, [&](double x, double y, Color& wanted) {
            const double onX = x * width / height * eyeZ, onY = y * eyeZ, pixel = 2 * eyeZ / height;
            if (std::fabs(std::fabs(onX) - 6) < pixel || std::fabs(std::fabs(onY) - 1.15) < pixel) return false;
            if (std::fabs(onX) > 6 || std::fabs(onY) > 1.15) return true;
            const double bearing = M_PI - pan + 2 * M_PI * (onX + 6) / 12;  // clockwise from the top of the circle
            const double radius = 1 - 0.00179 - 0.8 * (1.15 - onY) / 2.3;
            wanted = waves.sample(0.5 + 0.5 * radius * std::sin(bearing), 0.5 - 0.5 * radius * std::cos(bearing));
            return true;
        });
    }
    void expectShape(const Shape& shape, const Shape::Pose& pose, double spin, double zoom, const char* what) {
        const Vec eye = turnX({0, pose.lift, pose.distance + zoom}, pose.lean - 90);
        const auto hit = [&](double x, double y) { return shape.hit(eye, turnX({x * 4 / 3, y, -3}, pose.lean - 90)); };
        const auto face = [&hit](double x, double y) {
            const auto place = hit(x, y);
            return place ? 1 + place->inside : 0;
        };
        compare(shown(), {0, 0, 400, 300}, std::string(shape.name) + what, [&](double x, double y, Color& wanted) {
            // The mesh is a polygon and its edges lie a little inside the circle's.
            for (const double dx : {-0.01, 0.0, 0.01})
                for (const double dy : {-0.01, 0.0, 0.01})
                    if (face(x + dx, y + dy) != face(x, y)) return false;
            if (const auto place = hit(x, y)) wanted = shape.color(waves, *place, spin);
            return true;
        });
    }

    const Frame waves = wavyFrame();
};

TEST_F(CylinderGl, theStripUnrollsTheCircleClockwiseWithTheRimOnTop) {
    startView(2, 480, 270);
    shown(waves);
    expectStrip(480, 270, 2.035, 2.0, "rest");
    pinch(2.0f);
    expectStrip(480, 270, 2.035, 1.15, "pinched in past the limit: fills the height");
    drag(100, 200, 400, 20);
    expectStrip(480, 270, 2.035 + 300 * 0.00225, 1.15, "dragged to the right and up");
    pinch(0.5f);
    expectStrip(480, 270, 2.035 + 300 * 0.00225, 2.0, "pinched out past the limit");
    window->resize(1400, 200);
    redraw();
    expectStrip(1400, 200, 2.035 + 300 * 0.00225, 2.0, "the ends of the strip in a wide window");
}

TEST_F(CylinderGl, theShapesAreRightAtRestAndAtTheirLimits) {
    tolerance = 5;
    start(400, 300);
    for (const Shape& shape : shapes) {
        bus.setConfig(DCFG_RENDER_MODE, shape.mode);
        shown(waves);
        expectShape(shape, shape.atRest, 0, 0, " at rest");
        drag(0, 0, 800.0f / 3, 500);
        pinch(2);
        expectShape(shape, shape.atLower, 30, -1, " dragged right and down, pinched in");
        drag(800, 1000, 0, 0);
        pinch(1);
        expectShape(shape, shape.atUpper, -60, 1, " dragged left and up, pinched out");
    }
}

}  // namespace
}  // namespace zet::test
