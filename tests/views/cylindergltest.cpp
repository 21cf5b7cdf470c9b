#include "views/panesgl.h"

namespace zet::test {
namespace {

// The drum or the bowl in axes of its own: x to the viewer's right, y away from the viewer, z up the shape.
struct Shape {
    const char* name;
    RenderMode mode;
    double rimZ, height;  // along the axis: where the rim is, how far the shape reaches down from it
    double roundness;     // k of its surface x^2 + y^2 + k z^2 = 36 under the rim
    double blend, innerRadius;
    double handedness;  // 1: the picture is the right way round on the outside, -1: on the inside
    struct Pose {
        double lean;            // degrees by which the rim tips towards the viewer
        double lift, distance;  // of the eye, from the middle
    } atRest, atLower;

    // The place that a ray meets first.
    std::optional<Vec> hit(const Vec& from, const Vec& ray) const {
        for (const double side : {-1.0, 1.0}) {
            const Vec place = meet(from + Vec{0, 0, -rimZ}, ray, roundness, side);
            if (place.z <= 0 && place.z >= -height) return place;
        }
        return std::nullopt;
    }
    Color color(const Frame& frame, const Vec& place, double spin) const {
        const double depth = -place.z / height, down = std::asin(std::min(depth, 1.0)) / (M_PI / 2);
        const double radius = 0.499 * (1 - (1 - innerRadius) * std::lerp(down, depth, blend));
        // Clockwise from the viewer's side as seen from above.
        const double bearing = std::atan2(place.x, -place.y) - spin / halfTurn;
        return frame.sample(0.5 + handedness * radius * std::sin(bearing), 0.5 - radius * std::cos(bearing));
    }
};

const Shape shapes[] = {
    {"drum", RENDER_MODE_DRUM, 3.186, 6.372, 0, 0.6, 0.1, 1, {28.307, 0.15243, 22.2}, {29.35, 0.158, 22.2}},
    {"bowl", RENDER_MODE_BOWL, 2.31, 6.6, 0.826446, 0.4, 0, -1, {36.06, 0.32396, 20.05}, {40.38, 0.378, 20.05}},
};

struct CylinderGl : PanesGl {
    // The strip as told by hand: clockwise around the lens circle from left to right, from the rim down to the inner
    // fifth. Its ends meet `pan` radians counter-clockwise from the bottom of the circle. It lies in the plane z = 0,
    // 12 by 2.3, seen from `eyeZ` in front of it, with half a right angle from the middle to the upper edge.
    void expectStrip(double aspect, double pan, double eyeZ, const std::string& what) {
        compareAll(what, [&](double x, double y) -> Wanted {
            const double onX = x * aspect * eyeZ, onY = y * eyeZ;
            const double beyond = std::max(std::fabs(onX) - 6, std::fabs(onY) - 1.15);
            if (std::fabs(beyond) < 0.02) return std::nullopt;
            if (beyond > 0) return Color{};
            const double bearing = M_PI - pan + 2 * M_PI * (onX + 6) / 12;  // clockwise from the top of the circle
            const double radius = 1 - 0.00179 - 0.8 * (1.15 - onY) / 2.3;
            return waves.sample(0.5 + 0.5 * radius * std::sin(bearing), 0.5 - 0.5 * radius * std::cos(bearing));
        });
    }
    void expectShape(const Shape& shape, const Shape::Pose& pose, double spin, double zoom, const char* what) {
        const Vec eye = Vec{0, pose.lift, pose.distance + zoom}.aboutX(pose.lean - 90);
        const auto hit = [&](double x, double y) {
            return shape.hit(eye, Vec{x * 4 / 3, y, -3}.aboutX(pose.lean - 90));
        };
        compareAll(std::string(shape.name) + what, [&](double x, double y) -> Wanted {
            const std::optional<Vec> place = hit(x, y);
            // The mesh is a polygon, and its edges lie a little inside the circle.
            for (const double dx : {-0.01, 0.0, 0.01}) {
                for (const double dy : {-0.01, 0.0, 0.01}) {
                    const std::optional<Vec> beside = hit(x + dx, y + dy);
                    if (beside.has_value() != place.has_value()) return std::nullopt;
                    if (place && std::fabs(beside->y - place->y) > 3) return std::nullopt;  // across the rim
                }
            }
            return place ? shape.color(waves, *place, spin) : Color{};
        });
    }

    // Chroma is different at every place; steep waves of luma show a shift of two pixels.
    const Frame waves{256, 256, [](int x, int y) {
                          const double right = 2 * M_PI * x / 256, down = 2 * M_PI * y / 256;
                          const double luma = 128 + 25 * std::sin(6 * right) + 25 * std::cos(5 * down);
                          return Yuv{static_cast<int>(std::lround(luma)), 95 + 60 * y / 256, 150 - 40 * x / 256};
                      }};
};

TEST_F(CylinderGl, theStripUnrollsTheCircleClockwiseWithTheRimOnTop) {
    startView(RENDER_MODE_PANORAMA, 480, 270);
    shown(waves);
    expectStrip(480.0 / 270, 2.035, 2.0, "rest");
    drag(100, 200, 400, 20);
    pinch(2.0f, 100);
    expectStrip(480.0 / 270, 2.035 + 300 * 0.00225, 1.15, "dragged right and up, pinched in past the limit");
    pinch(0.5f, 100);
    window->resize(1400, 200);
    expectStrip(7, 2.035 + 300 * 0.00225, 2.0, "pinched out past it, the ends of the strip in a wide window");
}

TEST_F(CylinderGl, theShapesAreRightAtRestAndAtALimit) {
    tolerance = 5;
    start(400, 300);
    for (const Shape& shape : shapes) {
        bus.setConfig(DCFG_RENDER_MODE, shape.mode);
        shown(waves);
        expectShape(shape, shape.atRest, 0, 0, " at rest");
        drag(0, 0, 800.0f / 3, 500);
        pinch(2, 100);
        expectShape(shape, shape.atLower, 30, -1, " dragged right and down, pinched in");
    }
}

}  // namespace
}  // namespace zet::test
