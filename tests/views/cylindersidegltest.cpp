#include <cmath>
#include <numbers>

#include "support/displaytest.h"
#include "views/wavyframe.h"

namespace zet::test {
namespace {

constexpr double pi = std::numbers::pi;

// A place in the scene's plane z = 0, where the strip lies.
struct Place {
    double x = 0;
    double y = 0;
    bool onStrip() const { return std::abs(x) < 6.0 && std::abs(y) < 1.15; }
};

// The strip as told by hand: clockwise around the lens circle from left to right, from the rim down to the inner fifth.
// Its ends meet `pan` radians counter-clockwise from the bottom of the circle.
Color stripColor(const Frame& frame, const Place& place, double pan) {
    const double bearing = pi - pan + 2 * pi * (place.x + 6.0) / 12.0;  // clockwise from the top of the circle
    const double radius = 1.0 - 0.00179 - 0.8 * (1.15 - place.y) / 2.3;
    return frame.sample(0.5 + 0.5 * radius * std::sin(bearing), 0.5 - 0.5 * radius * std::cos(bearing));
}

// A pixel seen from `eyeZ` in front of the strip, with half a right angle from the middle to the upper edge.
Place placeOf(const Picture& picture, double x, double y, double eyeZ) {
    const double half = picture.height / 2.0;
    return {(x - picture.width / 2.0) / half * eyeZ, (half - y) / half * eyeZ};
}

bool edgeIn(const Picture& picture, int x, int y, double eyeZ) {
    int corners = 0;
    for (const int dx : {0, 1})
        for (const int dy : {0, 1}) corners += placeOf(picture, x + dx, y + dy, eyeZ).onStrip();
    return corners % 4 != 0;
}

void expectStrip(const Picture& picture, const Frame& frame, double pan, double eyeZ) {
    int strip = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (edgeIn(picture, x, y, eyeZ)) continue;
            const bool onStrip = placeOf(picture, x, y, eyeZ).onStrip();
            const Color expected = onStrip ? stripColor(frame, placeOf(picture, x + 0.5, y + 0.5, eyeZ), pan) : Color{};
            // 4: a sample of a plane is a byte again, 1 off in Y and in U, which blue takes twice; then the window.
            ASSERT_TRUE(near(picture.at(x, y), expected, 4))
                << x << ' ' << y << ": " << picture.at(x, y) << " for " << expected;
            strip += onStrip;
        }
    }
    EXPECT_GT(strip, 1000);
}

class CylinderSideGl : public DisplayTest {
protected:
    void open(int width, int height) {
        bus.setConfig(DCFG_RENDER_MODE, 2);
        start(width, height);
    }
    void pinch(float factor, int times) {
        for (int i = 0; i < times; ++i) bus.setConfig(DCFG_PINCH, factor);
    }

    const Frame frame = wavyFrame();
};

TEST_F(CylinderSideGl, unrollsTheCircleClockwiseWithTheRimOnTop) {
    open(480, 270);
    expectStrip(shown(frame), frame, 2.035, 2.0);
    {
        SCOPED_TRACE("pinched in past the limit: fills the height");
        pinch(2.0f, 100);
        expectStrip(shown(), frame, 2.035, 1.15);
    }
    {
        SCOPED_TRACE("dragged to the right and up");
        DragPoints points{100, 200, 400, 20};
        bus.setConfig(DCFG_DRAG, &points);
        expectStrip(shown(), frame, 2.035 + 300 * 0.00225, 1.15);
    }
    {
        SCOPED_TRACE("pinched out past the limit");
        pinch(0.5f, 100);
        expectStrip(shown(), frame, 2.035 + 300 * 0.00225, 2.0);
    }
}

TEST_F(CylinderSideGl, showsTheEndsOfTheStripInAWideWindow) {
    open(1400, 200);
    expectStrip(shown(frame), frame, 2.035, 2.0);
}

}  // namespace
}  // namespace zet::test
