// The flat view against a picture worked out pixel by pixel: from the surface back through zoom, turn, margins and lens
// to a place in the planes.

#include <GLES2/gl2.h>

#include <algorithm>
#include <atomic>
#include <cmath>

#include "support/displaytest.h"

namespace zet::test {
namespace {

/// What is set, in the words of the view: rotation clockwise, pan in view units right and up, zoom about the centre.
struct Look {
    int rotation = 0;
    double scale = 1;
    double panX = 0;
    double panY = 0;
    LensParam lens;
    Color clear;
};

struct Place {
    double x, y;
};

/// Where a corrected coordinate lies in the bent picture, by Brown's model.
Place throughLens(const LensParam& lens, Place p) {
    if (lens.k1 == 0) return p;
    const double x = (p.x - lens.ox) / lens.fx, y = (p.y - lens.oy) / lens.fy, r2 = x * x + y * y;
    const double radial = 1 + lens.k1 * r2 + lens.k2 * std::pow(r2, 2) + lens.k3 * std::pow(r2, 3);
    return {(x * radial + 2 * lens.p1 * x * y + lens.p2 * (r2 + 2 * x * x)) * lens.fx + lens.ox,
            (y * radial + 2 * lens.p2 * x * y + lens.p1 * (r2 + 2 * y * y)) * lens.fy + lens.oy};
}

/// The surface, in which the picture fills the side that fits and has bars on the other.
class Expectation {
public:
    Expectation(const Frame& frame, const Look& look, int width, int height)
        : _frame(frame), _look(look), _width(width), _height(height) {
        const bool lies = look.rotation == 90 || look.rotation == 270;
        const int frameWidth = lies ? frame.record.height : frame.record.width;
        int frameHeight = lies ? frame.record.width : frame.record.height;
        if (look.lens.k1 != 0) frameHeight = static_cast<int>(frameHeight * 0.83);
        const double fit = static_cast<double>(width) / height * frameHeight / frameWidth;
        _a = std::max(fit, 1.0);
        _b = std::max(1 / fit, 1.0);
    }

    /// Distance of a pixel's centre from the quad's middle, in halves of the quad; beyond 1 there is the bar.
    Place onQuad(int x, int y) const {
        const double ndcX = (x + 0.5) / _width * 2 - 1, ndcY = 1 - (y + 0.5) / _height * 2;
        return {(ndcX * _a - _look.panX) / _look.scale, (ndcY * _b - _look.panY) / _look.scale};
    }
    /// Within a pixel and a half of the quad's edge, where the two mix.
    bool isAtEdge(int x, int y) const {
        const Place q = onQuad(x, y);
        const double reach = 3 / _look.scale * std::max(_a / _width, _b / _height);
        return std::abs(std::max(std::abs(q.x), std::abs(q.y)) - 1) < reach;
    }
    Color at(int x, int y) const {
        const Place q = onQuad(x, y);
        if (std::abs(q.x) > 1 || std::abs(q.y) > 1) return _look.clear;
        // From the top left corner of the turned picture to that of the picture itself.
        const double u = (q.x + 1) / 2, v = (1 - q.y) / 2;
        const Place turned = _look.rotation == 0     ? Place{u, v}
                             : _look.rotation == 90  ? Place{v, 1 - u}
                             : _look.rotation == 180 ? Place{1 - u, 1 - v}
                                                     : Place{1 - v, u};
        const LensParam& lens = _look.lens;
        const Place p = {std::lerp(lens.leftMargin, 1 + lens.rightMargin, turned.x),
                         std::lerp(lens.topMargin, 1 + lens.bottomMargin, turned.y)};
        const Place bent = throughLens(lens, p);
        return _frame.sample(bent.x, bent.y);
    }

private:
    const Frame& _frame;
    const Look& _look;
    int _width, _height;
    double _a, _b;
};

// The sampler rounds each plane to 8 bits, U counts 2.03 times in blue, and the result is rounded too.
constexpr double tolerance = 2.5;

class FlatView : public DisplayTest {
protected:
    /// Compares every third pixel.
    void expectShown(const Frame& frame, const Look& look, const std::string& name) {
        const Picture picture = shown(frame);
        const Expectation expected(frame, look, picture.width, picture.height);
        int wrong = 0;
        for (int y = 0; y < picture.height; y += 3) {
            for (int x = 0; x < picture.width; x += 3) {
                if (expected.isAtEdge(x, y) || near(picture.at(x, y), expected.at(x, y), tolerance)) continue;
                if (++wrong <= 3) {
                    ADD_FAILURE() << name << " at " << x << ' ' << y << ": " << picture.at(x, y) << ", expected "
                                  << expected.at(x, y);
                }
            }
        }
        EXPECT_EQ(wrong, 0) << name;
    }
    /// Moves the picture by a drag, which goes against the second point: `dx` right and `dy` down from it.
    void drag(float dx, float dy) {
        DragPoints points{100 + dx, 100 + dy, 100, 100};
        bus.setConfig(DCFG_DRAG, static_cast<const void*>(&points));
    }
};

TEST_F(FlatView, standsUpright) {
    const Yuv red{110, 110, 190}, green{120, 90, 80}, blue{90, 190, 110}, grey{160, 128, 128};
    const Frame frame(64, 64, [&](int x, int y) { return y < 32 ? (x < 32 ? red : green) : (x < 32 ? blue : grey); });
    start(128, 128);
    const struct {
        int rotation;
        Yuv topLeft, topRight, bottomLeft, bottomRight;
    } cases[] = {{0, red, green, blue, grey},   {90, blue, red, grey, green},  // clockwise: the left side comes up
                 {180, grey, blue, green, red}, {270, green, grey, red, blue}, {450, blue, red, grey, green},
                 {45, blue, red, grey, green}};  // no turn of the picture: the last one stays
    for (const auto& one : cases) {
        bus.setConfig(DCFG_ROTATION, one.rotation);
        const Picture picture = shown(frame);
        EXPECT_TRUE(near(picture.at(32, 32), toColor(one.topLeft), 1)) << one.rotation;
        EXPECT_TRUE(near(picture.at(96, 32), toColor(one.topRight), 1)) << one.rotation;
        EXPECT_TRUE(near(picture.at(32, 96), toColor(one.bottomLeft), 1)) << one.rotation;
        EXPECT_TRUE(near(picture.at(96, 96), toColor(one.bottomRight), 1)) << one.rotation;
    }
}

TEST_F(FlatView, fitsTurnsZoomsAndMoves) {
    const Frame wide = smoothFrame(160, 90), upright = smoothFrame(88, 160), padded = smoothFrame(120, 90, 128);
    const struct {
        const char* name;
        const Frame& frame;
        Look look;
    } cases[] = {
        {"bars above and below", wide, {}},
        {"bars beside", upright, {}},
        {"full, line padding and all", padded, {}},
        {"turned by 90", wide, {90, 1, 0, 0, {}, {}}},
        {"turned by 180", wide, {180, 1, 0, 0, {}, {}}},
        {"turned by 270", upright, {270, 1, 0, 0, {}, {}}},
        {"zoomed", wide, {0, 2.5, 0, 0, {}, {}}},
        {"moved right and down", wide, {0, 2, 0.3, -0.1, {}, {}}},
        {"moved left and up, turned", upright, {90, 3, -0.6, 0.9, {}, {}}},
        {"moved to the end", wide, {0, 1.5, 0.5, 0, {}, {}}},
        {"clear colour", upright, {0, 1, 0, 0, {}, {16, 32, 48}}},
    };
    start(320, 240);
    for (const auto& [name, frame, look] : cases) {
        bus.setConfig(DCFG_RENDER_MODE, 0);  // pan and zoom start afresh
        bus.setConfig(DCFG_ROTATION, look.rotation);
        bus.setConfig(DCFG_SCALE, look.scale);
        const auto red = static_cast<unsigned>(look.clear.r), green = static_cast<unsigned>(look.clear.g);
        bus.setConfig(DCFG_CLEAR_COLOR, 0xff000000 | red << 16 | green << 8 | static_cast<unsigned>(look.clear.b));
        redraw();
        // 1000 pixels are one view unit at zoom 1.
        drag(static_cast<float>(look.panX * 1000 / look.scale), static_cast<float>(-look.panY * 1000 / look.scale));
        expectShown(frame, look, name);
    }
    drag(2000, 0);
    expectShown(upright, {0, 1, 0, 0, {}, {16, 32, 48}}, "a drag at zoom 1 is put back by the next frame");
}

TEST_F(FlatView, straightensTheLens) {
    const Frame frame = smoothFrame(160, 120);
    const struct {
        const char* name;
        LensParam lens;
        int rotation;
    } cases[] = {
        {"radial", {-0.2, 0.05, 0.9, 0, 0, 0.9, 1.1, 0.5, 0.5, 0, 0, 0, 0}, 0},
        {"tangential", {0.01, 0, 0, 0.04, -0.03, 1, 1, 0.45, 0.55, 0, 0, 0, 0}, 0},
        {"all with margins", {-0.15, 0.03, 0.02, 0.01, 0.02, 0.8, 0.9, 0.52, 0.47, -0.05, 0.1, 0.08, -0.02}, 0},
        {"turned", {-0.2, 0.05, 0, 0.02, 0, 0.9, 1.1, 0.5, 0.5, 0, 0.1, 0, 0}, 90},
        {"margins alone", {0, 5, 5, 5, 5, 1, 1, 0.5, 0.5, -0.1, 0.2, 0.05, -0.15}, 0},
        {"none", {}, 0},
    };
    start(320, 240);
    for (const auto& [name, lens, rotation] : cases) {
        bus.setConfig(DCFG_LENS_PARAM, &lens);
        bus.setConfig(DCFG_ROTATION, rotation);
        expectShown(frame, {rotation, 1, 0, 0, lens, {}}, name);
    }
    bus.setConfig(DCFG_LENS_PARAM, SizeHelp{&cases[0].lens, 96});
    expectShown(frame, {}, "a record that is too short");
}

TEST_F(FlatView, zoomsToARectangleWithTheWholeFrameInTheCorner) {
    const struct {
        const char* name;
        RectItem rect;
        int rotation;
    } cases[] = {{"inside", {60, 40, 40, 30, 0}, 0},
                 {"beyond the edge", {-10, 80, 40, 40, 0}, 0},
                 {"flat", {20, 50, 80, 10, 0}, 0},
                 {"of a turned frame", {30, 60, 40, 40, 0}, 90}};
    const int kind = AI_KIND_RECTS;
    Frame frame = smoothFrame(160, 120);
    frame.record.aiCount = 1;
    frame.record.aiKind = &kind;
    start(320, 240);
    bus.setConfig(DCFG_SCALE, 2.0f);
    frame.record.aiItems = &cases[0].rect;
    expectShown(frame, {0, 2, 0, 0, {}, {}}, "the player doesn't allow it");
    global.setRectZoom(true);
    for (const auto& [name, rect, rotation] : cases) {
        bus.setConfig(DCFG_ROTATION, rotation);
        frame.record.aiItems = &rect;
        const Picture picture = shown(frame);

        // The rectangle, in pixels of the picture as it is turned, as large as fits and at the centre of the view, as
        // far as the picture's edges allow; over it the whole at 0.3, 0.7 of the view right and down.
        const double w = rotation == 90 ? 120 : 160, h = rotation == 90 ? 160 : 120;
        const double scale = std::min(w / rect.width, h / rect.height);
        const double centreX = (rect.x + rect.width / 2.0) / w * 2 - 1;
        const double centreY = 1 - (rect.y + rect.height / 2.0) / h * 2;
        const auto held = [scale](double pan) { return std::clamp(pan, 1 - scale, scale - 1); };
        const Look zoomed{rotation, scale, held(-centreX * scale), held(-centreY * scale), {}, {}};
        const Look whole{rotation, 0.3, 0.7, -0.7, {}, {}};
        const Expectation zoom(frame, zoomed, 320, 240), inset(frame, whole, 320, 240);
        int insetPixels = 0;
        for (int y = 1; y < 240; y += 3) {
            for (int x = 1; x < 320; x += 3) {
                if (inset.isAtEdge(x, y) || zoom.isAtEdge(x, y)) continue;
                const Place q = inset.onQuad(x, y);
                const bool inInset = std::abs(q.x) < 1 && std::abs(q.y) < 1;
                insetPixels += inInset;
                const Color expected = inInset ? inset.at(x, y) : zoom.at(x, y);
                ASSERT_TRUE(near(picture.at(x, y), expected, tolerance))
                    << name << ' ' << x << ' ' << y << ": " << picture.at(x, y) << ", expected " << expected;
            }
        }
        EXPECT_GT(insetPixels, 200) << name;
    }
    const RectItem empty{10, 10, 0, 20, 0};
    bus.setConfig(DCFG_ROTATION, 0);
    frame.record.aiItems = &empty;
    expectShown(frame, {0, 2, 0, 0, {}, {}}, "a rectangle without a width");
    frame.record.aiCount = 0;
    expectShown(frame, {0, 2, 0, 0, {}, {}}, "none: the zoom before it comes back");
}

TEST_F(FlatView, findsTheSettingsMadeBeforeIt) {
    const LensParam lens{-0.2, 0, 0, 0, 0, 1, 1, 0.5, 0.5, 0, 0, 0, 0};
    const Look look{180, 2, 0, 0, lens, {16, 32, 48}};
    const Frame frame = smoothFrame(120, 160);
    bus.setConfig(DCFG_ROTATION, 180);
    bus.setConfig(DCFG_SCALE, 9.0f);
    bus.setConfig(DCFG_MAX_SCALE, 2.0f);
    bus.setConfig(DCFG_CLEAR_COLOR, 0x00102030);
    bus.setConfig(DCFG_LENS_PARAM, &lens);
    start(320, 160);
    expectShown(frame, look, "before the display");
    bus.setConfig(DCFG_RENDER_MODE, 0);
    expectShown(frame, look, "a new view");
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    expectShown(frame, look, "a new surface");
}

TEST_F(FlatView, answersTheZoomInForce) {
    start(128, 128);
    shown(smoothFrame(64, 64));
    EXPECT_EQ(scale(), 1.0f);
    const struct { float set, answered; } cases[] = {{9, 4}, {2.5f, 2.5f}, {0.1f, 1}, {NAN, 1}, {-INFINITY, 1}, {3, 3}};
    for (const auto& [set, answered] : cases) {
        bus.setConfig(DCFG_SCALE, set);
        EXPECT_EQ(scale(), answered) << set;
    }
    bus.setConfig(DCFG_MAX_SCALE, NAN);
    EXPECT_EQ(scale(), 3.0f);
    bus.setConfig(DCFG_MAX_SCALE, 2.0f);
    EXPECT_EQ(scale(), 2.0f);

    std::atomic<int> requests = 0;
    bus.registObserver(
        DCFG_RENDER_REQUEST, [&](DisplayConfig&, DisplayConfigUserData&) { return ++requests; }, nullptr,
        DCFG_FLAG_EVENT);
    scale();
    EXPECT_EQ(requests, 0) << "a read redraws nothing";
    TouchPoint outside{129, 5}, corner{0, 128};
    bus.setConfig(DCFG_TOUCH_DOWN, static_cast<const void*>(&corner));
    EXPECT_EQ(requests, 0);
    bus.setConfig(DCFG_DOUBLE_TAP, static_cast<const void*>(&outside));
    EXPECT_EQ(requests, 1);
    redraw();
    EXPECT_EQ(scale(), 2.0f) << "a tap outside the surface starts nothing";
    bus.setConfig(DCFG_DOUBLE_TAP, static_cast<const void*>(&corner));
    ASSERT_TRUE(waitForSwaps(40));  // 17 steps back to 1; the flight pulls its own frames
    EXPECT_EQ(scale(), 1.0f);
    stop();
}

TEST_F(FlatView, leavesNothingBehindForTheNextView) {
    std::atomic<int> draws = 0, enabled = 0, errors = 0;
    const SwapHook hook([&] {
        ++draws;
        GLint arrays = 0;
        glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &arrays);
        for (GLint i = 0; i < arrays; ++i) {
            GLint is = 0;
            glGetVertexAttribiv(static_cast<GLuint>(i), GL_VERTEX_ATTRIB_ARRAY_ENABLED, &is);
            enabled += is;
        }
        errors += glGetError() != GL_NO_ERROR;
    });
    start(128, 128);
    shown(smoothFrame(64, 64));
    EXPECT_GT(draws, 0);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(errors, 0);
    stop();
}

}  // namespace
}  // namespace zet::test
