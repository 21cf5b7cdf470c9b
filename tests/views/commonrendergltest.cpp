// The flat view against a picture worked out pixel by pixel: from the surface back through zoom, turn, margins and lens
// to a place in the planes.

#include "views/panesgl.h"

namespace zet::test {
namespace {

/// What is set, in the words of the view: rotation clockwise, pan in view units right and up, zoom about the centre.
struct Look {
    int rotation = 0;
    double scale = 1, panX = 0, panY = 0;
    LensParam lens;
    Color clear;
};

/// Where a corrected coordinate lies in the bent picture, by Brown's model.
Vec throughLens(const LensParam& lens, double u, double v) {
    if (lens.k1 == 0) return {u, v};
    const double x = (u - lens.ox) / lens.fx, y = (v - lens.oy) / lens.fy, r2 = x * x + y * y;
    const double radial = 1 + lens.k1 * r2 + lens.k2 * std::pow(r2, 2) + lens.k3 * std::pow(r2, 3);
    return {(x * radial + 2 * lens.p1 * x * y + lens.p2 * (r2 + 2 * x * x)) * lens.fx + lens.ox,
            (y * radial + 2 * lens.p2 * x * y + lens.p1 * (r2 + 2 * y * y)) * lens.fy + lens.oy};
}

/// What the surface of 320 by 240 shows: the picture fills the side that fits and has bars on the other. Places count
/// from the middle of the surface, in halves of it.
class Expectation {
public:
    Expectation(const Frame& frame, const Look& look) : _frame(frame), _look(look) {
        const bool lies = look.rotation % 180 != 0;
        const int frameWidth = lies ? frame.record.height : frame.record.width;
        int frameHeight = lies ? frame.record.width : frame.record.height;
        if (look.lens.k1 != 0) frameHeight = static_cast<int>(frameHeight * 0.83);
        const double fit = 4.0 / 3 * frameHeight / frameWidth;
        _a = std::max(fit, 1.0);
        _b = std::max(1 / fit, 1.0);
        _edge = 3 / look.scale * std::max(_a / 320, _b / 240);
    }
    /// No colour within a pixel and a half of the picture's edge, where picture and bar mix.
    PanesGl::Wanted at(double x, double y) const {
        if (std::abs(beyond(x, y)) < _edge) return std::nullopt;
        if (beyond(x, y) > 0) return _look.clear;
        // The turned picture's place in the picture itself, from -1 to 1, and then in what the margins leave of it.
        const Vec turned = Vec{across(x), up(y), 0}.aboutZ(-_look.rotation);
        const LensParam& lens = _look.lens;
        const Vec bent = throughLens(lens, std::lerp(lens.leftMargin, 1 + lens.rightMargin, (1 + turned.x) / 2),
                                     std::lerp(lens.topMargin, 1 + lens.bottomMargin, (1 - turned.y) / 2));
        return _frame.sample(bent.x, bent.y);
    }

    bool isBeside(double x, double y) const { return beyond(x, y) > _edge; }

private:
    // In halves of the picture; negative inside.
    double beyond(double x, double y) const { return std::max(std::abs(across(x)), std::abs(up(y))) - 1; }
    double across(double x) const { return (x * _a - _look.panX) / _look.scale; }
    double up(double y) const { return (y * _b - _look.panY) / _look.scale; }

    const Frame& _frame;
    const Look& _look;
    double _a, _b, _edge;
};

struct FlatView : PanesGl {
    // The sampler rounds each plane to 8 bits, U counts 2.03 times in blue, and the result is rounded too.
    FlatView() { tolerance = 2.5; }
    void set(const Look& look) {
        const Color& clear = look.clear;
        bus.setConfig(DCFG_ROTATION, look.rotation);
        bus.setConfig(DCFG_SCALE, look.scale);
        bus.setConfig(DCFG_LENS_PARAM, &look.lens);
        bus.setConfig(DCFG_CLEAR_COLOR, static_cast<int>(clear.r * 65536 + clear.g * 256 + clear.b));
    }
    // A drag goes against its second point; 1000 pixels are one view unit at zoom 1.
    void move(double right, double up, double scale) {
        drag(static_cast<float>(100 + right * 1000 / scale), static_cast<float>(100 - up * 1000 / scale), 100, 100);
    }
    void expectShown(const Frame& source, const Look& look, const std::string& name) {
        bus.setConfig(DCFG_YUV_FRAME, &source.record);
        const Expectation expected(source, look);
        compareAll(name, [&expected](double x, double y) { return expected.at(x, y); });
    }
};

TEST_F(FlatView, fitsTurnsZoomsMovesAndStraightens) {
    const Frame wide = smoothFrame(160, 90), upright = smoothFrame(88, 160), padded = smoothFrame(120, 90, 128);
    const Color clear{16, 32, 48};
    const struct {
        const char* name;
        const Frame& source;
        Look look;
    } cases[] = {
        {"set before the display", upright, {180, 2, 0, 0, {-0.2, 0, 0, 0, 0, 1, 1, 0.5, 0.5, 0, 0, 0, 0}, clear}},
        {"full, line padding and all", padded, {}},
        {"turned by 270, moved left and up", upright, {270, 3, -0.6, 0.9, {}, {}}},
        {"lens",
         wide,
         {0, 1, 0, 0, {-0.15, 0.03, 0.02, 0.01, 0.02, 0.8, 0.9, 0.52, 0.47, -0.05, 0.1, 0.08, -0.02}, {}}},
        {"turned lens, by more than a turn",
         wide,
         {450, 1, 0, 0, {-0.2, 0.05, 0, 0.02, 0, 0.9, 1.1, 0.5, 0.5, 0, 0.1, 0, 0}, {}}},
        {"margins alone", wide, {0, 1, 0, 0, {0, 5, 5, 5, 5, 1, 1, 0.5, 0.5, -0.1, 0.2, 0.05, -0.15}, clear}},
    };
    for (const auto& [name, source, look] : cases) {
        bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_FLAT);  // pan and zoom start afresh
        set(look);
        if (!display) start(320, 240);
        redraw();
        move(look.panX, look.panY, look.scale);
        expectShown(source, look, name);
    }
    const Look full{0, 1, 0, 0, {}, clear};
    set(full);
    move(2, 0, 1);
    expectShown(upright, full, "a drag at zoom 1 is put back by the next frame");
    bus.setConfig(DCFG_LENS_PARAM, SizeHelp{&cases[0].look.lens, 96});
    bus.setConfig(DCFG_ROTATION, 45);
    expectShown(upright, full, "a lens record that is too short; no turn: the last one stays");
}

TEST_F(FlatView, zoomsToARectangleWithTheWholeFrameInTheCorner) {
    const struct {
        const char* name;
        RectItem rect;
        int rotation, width, height;  // of the picture as it is turned
    } cases[] = {{"beyond the edge", {-10, 80, 40, 40, 0}, 0, 160, 120},
                 {"of a turned frame", {30, 60, 40, 40, 0}, 90, 120, 160}};
    const int kind = AI_KIND_RECTS;
    Frame source = smoothFrame(160, 120);
    source.record.aiCount = 1;
    source.record.aiKind = &kind;
    source.record.aiItems = &cases[0].rect;
    start(320, 240);
    bus.setConfig(DCFG_SCALE, 2.0f);
    expectShown(source, {0, 2, 0, 0, {}, {}}, "the player doesn't allow it");
    global.setRectZoom(true);
    for (const auto& [name, rect, rotation, w, h] : cases) {
        bus.setConfig(DCFG_ROTATION, rotation);
        source.record.aiItems = &rect;
        // As large as fits and at the centre of the view, as far as the picture's edges allow; over it the whole at
        // 0.3, 0.7 of the view right and down.
        const double scale = std::min(1.0 * w / rect.width, 1.0 * h / rect.height);
        const double panX = std::clamp((1 - (rect.x * 2.0 + rect.width) / w) * scale, 1 - scale, scale - 1);
        const double panY = std::clamp(((rect.y * 2.0 + rect.height) / h - 1) * scale, 1 - scale, scale - 1);
        const Look zoomed{rotation, scale, panX, panY, {}, {}}, whole{rotation, 0.3, 0.7, -0.7, {}, {}};
        const Expectation zoom(source, zoomed), inset(source, whole);
        bus.setConfig(DCFG_YUV_FRAME, &source.record);
        compareAll(name, [&](double x, double y) { return inset.isBeside(x, y) ? zoom.at(x, y) : inset.at(x, y); });
    }
    const RectItem empty{10, 10, 0, 20, 0};
    bus.setConfig(DCFG_ROTATION, 0);
    source.record.aiItems = &empty;
    expectShown(source, {0, 2, 0, 0, {}, {}}, "a rectangle without a width: the zoom before it comes back");
}

TEST_F(FlatView, answersTheZoomInForce) {
    start(128, 128);
    shown(smoothFrame(64, 64));
    const struct {
        std::int64_t id;
        float set, answered;
    } cases[] = {
        {DCFG_SCALE, 9, 4},       {DCFG_SCALE, 0.1f, 1},   {DCFG_SCALE, NAN, 1},   {DCFG_PINCH, 1.01f, 1.055f},
        {DCFG_PINCH, 100, 1.11f}, {DCFG_PINCH, 1, 1.055f}, {DCFG_PINCH, 0, 1},     {DCFG_SCALE, 5, 4},
        {DCFG_MAX_SCALE, NAN, 4}, {DCFG_MAX_SCALE, 10, 4}, {DCFG_MAX_SCALE, 2, 2}, {DCFG_MAX_SCALE, 0.5f, 1},
        {DCFG_MAX_SCALE, 4, 1},   {DCFG_SCALE, 3, 3},
    };
    for (const auto& [id, set, answered] : cases) {
        bus.setConfig(id, set);
        EXPECT_FLOAT_EQ(scale(), answered) << id << ' ' << set;
    }
    const int before = swapsEnded();
    touch(DCFG_DOUBLE_TAP, 0, 128);
    ASSERT_TRUE(waitForSwaps(40, before));  // 34 steps back to 1; the flight pulls its own frames
    EXPECT_EQ(scale(), 1.0f);
}

}  // namespace
}  // namespace zet::test
