// Faces, labels and a player's picture over the flat view, pixel by pixel against a drawing of the test's own.

#include <climits>
#include <cmath>
#include <cstring>

#include "overlay/material.h"
#include "support/allocations.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

constexpr int width = 640, height = 480;
constexpr Yuv ground{120, 150, 100};
constexpr int facesKind = AI_KIND_FACES, rectsKind = AI_KIND_RECTS;

// The flat view: a frame of the window's shape, upright or lying.
struct View {
    int rotation = 0;
    double scale = 1;
};

// Changes the colour of a place. False: the place is too close to a rim to know its side.
using Drawing = std::function<bool(double x, double y, Color& color)>;

void blend(Color& below, const Color& above, double share) {
    below = {std::lerp(below.r, above.r, share), std::lerp(below.g, above.g, share),
             std::lerp(below.b, above.b, share)};
}

bool drawGround(double, double, Color& color) {
    color = toColor(ground);
    return true;
}

// Something over the video, in units of its quad: -1 to 1, y upward. A picture has its places from 0 to 1, from its
// top left corner; without a picture it is a box.
struct Mark {
    double left, top, right, bottom;
    Color box;
    Drawing picture;

    bool draw(double x, double y, const View& view, Color& color) const {
        const double wide = view.scale * (view.rotation % 180 == 0 ? width : height * height / width) / 2;
        const double high = view.scale * height / 2;
        // Pixels from the four sides, inward.
        const double fromLeft = x - width / 2 - left * wide, fromRight = right * wide - x + width / 2;
        const double fromTop = y - height / 2 + top * high, fromBottom = height / 2 - bottom * high - y;
        const double depth = std::min({fromLeft, fromRight, fromTop, fromBottom});
        if (!picture) {
            if (std::abs(depth) > 3) return true;
            color = box;
            const double toSide = std::min(std::abs(fromLeft), std::abs(fromRight));
            return std::abs(depth) < 0.9 && toSide + std::min(std::abs(fromTop), std::abs(fromBottom)) > 5;
        }
        if (depth < 0.02) return depth < -0.02;
        const double u = fromLeft / (fromLeft + fromRight), v = fromTop / (fromTop + fromBottom);
        if (view.rotation == 90) return picture(v, 1 - u, color);
        if (view.rotation == 180) return picture(1 - u, 1 - v, color);
        if (view.rotation == 270) return picture(1 - v, u, color);
        return picture(u, v, color);
    }
};

Mark label(double left, double top, const std::string& text, const Color& ink) {
    Block block = typeset(text);
    const Frame frame(block.rowBytes, block.rows, [&block](int x, int y) { return Yuv{block.at(x, y), 128, 128}; });
    const auto draw = [=](double x, double y, Color& color) {
        blend(color, ink, frame.sample(x, y).r / 255);
        return true;
    };
    return {left, top, left + 0.1 * block.rowBytes / (block.rows * 1.5), top - 0.1, {}, draw};
}

// In the order in which they are drawn.
std::vector<Mark> marksOf(const std::vector<FaceItem>& faces, int option, const View& view) {
    std::vector<Mark> marks;
    const double w = view.rotation % 180 == 0 ? width : height, h = width + height - w;
    for (const FaceItem& f : faces) {
        const Color color = f.gender == 0 ? Color{255, 0, 0} : Color{0, 255, 0};
        const double left = (f.x - 0.2 * f.width) / w * 2 - 1, right = left + 1.4 * f.width / w * 2;
        const double top = 1 - (f.y - 0.2 * f.height) / h * 2, bottom = top - 1.4 * f.height / h * 2;
        if (option & FACE_BOX) marks.push_back({left, top, right, bottom, color, {}});
        std::vector<std::string> lines;
        if (option & FACE_NAME && f.name[0]) lines.emplace_back(f.name, strnlen(f.name, sizeof f.name));
        if (option & FACE_GENDER) lines.emplace_back(f.gender ? "male" : "female");
        if (option & FACE_AGE) lines.push_back(std::to_string(f.age));
        double y = (top + bottom) / 2 + 0.05 * static_cast<double>(lines.size());
        for (const std::string& line : lines) {
            if (line[0] > 0) marks.push_back(label(right + 0.01, y, line, color));
            y -= 0.1;
        }
    }
    return marks;
}

std::uint32_t logoPixel(int x, int y) {
    constexpr std::uint32_t pixels[2][3] = {{0xffff0000, 0x8000ff00, 0x40ffffff}, {0x000000ff, 0xc0ffff00, 0xff102030}};
    return pixels[y][x];
}

Mark logo(double left, double top, double right, double bottom, bool isUpsideDown, bool isOpaque) {
    const auto draw = [=](double x, double y, Color& color) {
        const double column = (isUpsideDown ? 1 - x : x) * 3, row = (isUpsideDown ? 1 - y : y) * 2;
        const std::uint32_t argb = logoPixel(static_cast<int>(column), static_cast<int>(row));
        const auto channel = [argb](int shift) { return static_cast<double>(argb >> shift & 255u); };
        blend(color, {channel(16), channel(8), channel(0)}, isOpaque ? 1 : channel(24) / 255);
        return std::abs(column - std::round(column)) > 0.1 && std::abs(row - std::round(row)) > 0.1;
    };
    return {left, top, right, bottom, {}, draw};
}

class OverlayGl : public DisplayTest {
protected:
    void begin(const std::string& font = serifFont) {
        bus.setConfig(DCFG_FACE_OPTION, 15);
        global.setFontPath(font);
        start(width, height);
    }
    void setItems(const void* items, std::size_t count, const int& kind) {
        frame.record.aiItems = items;
        frame.record.aiCount = static_cast<int>(count);
        frame.record.aiKind = &kind;
    }
    void expectFaces(const std::string& name, const std::vector<FaceItem>& faces, int option = 15, View view = {}) {
        setItems(faces.data(), faces.size(), facesKind);
        // The rasteriser places corners and filters labels in steps of 1/256.
        expectMarks(name, marksOf(faces, option, view), view, 6);
    }
    void expectMarks(const std::string& name, const std::vector<Mark>& marks, View view = {}, double tolerance = 2) {
        const Mark video = {-1, 1, 1, -1, {}, drawGround};
        const Picture screen = shown(frame);
        for (int i = 0; i < width * height; ++i) {
            const int x = i % width, y = i / width;
            Color color;
            const auto draw = [&](const Mark& mark) { return mark.draw(x + 0.5, y + 0.5, view, color); };
            const bool isKnown = draw(video) && std::all_of(marks.begin(), marks.end(), draw);
            ASSERT_TRUE(!isKnown || near(screen.at(x, y), color, tolerance))
                << name << " at " << x << ' ' << y << screen.at(x, y) << color;
        }
    }

    void overlay(const OverlayRect& rect, const Bytes& bmp) {
        bus.setConfig(DCFG_OVERLAY_IMAGE, SizeHelp{&rect, sizeof rect}, folder.save("logo.bmp", bmp));
    }

    const Folder folder;
    Frame frame{width, height, ground};
    const std::vector<FaceItem> pair = {{0, 1, 42, 60, 60, 100, 120, "Jim J."}, {0, 0, 7, 330, 260, 100, 100, ""}};
};

TEST_F(OverlayGl, drawsWhatTheOptionAsksForInAnyView) {
    begin();
    const View views[] = {{270, 1.5}, {0, 1}, {0, 2}, {90, 1}, {180, 1}};
    for (int option = 0; option < 16; ++option) {
        const View& view = views[option % 5];
        bus.setConfig(DCFG_FACE_OPTION, option);
        bus.setConfig(DCFG_ROTATION, view.rotation);
        bus.setConfig(DCFG_SCALE, view.scale);
        bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_FLAT);  // a new view, which takes the new option
        expectFaces("option " + std::to_string(option), pair, option, view);
    }
    bus.setConfig(DCFG_FACE_OPTION, 1);
    expectFaces("frozen since the first face", pair, 15, views[0]);
    expectFaces("faces gone", {}, 15, views[0]);
}

TEST_F(OverlayGl, oddNamesAndWildFacesHurtNobody) {
    begin();
    // The longest name is cut off at the window's edge, a refused one leaves its place empty.
    expectFaces("odd names", {{0, 0, 4294967295u, 20, 40, 60, 60, "0123456789 thirty-one letters.."},
                              {0, 2, 9, 20, 300, 100, 100, "\xc3\x89va"}});
    std::vector<FaceItem> wild(1000);
    constexpr int numbers[] = {INT_MIN, -100000, -1, 0, 1, 70000, INT_MAX};
    for (std::size_t i = 0; i < wild.size(); ++i) {
        wild[i] = {0, 1, 1, numbers[i % 7], numbers[i / 7 % 7], numbers[i / 3 % 7], numbers[i / 5 % 7], "x"};
    }
    setItems(wild.data(), wild.size(), facesKind);
    shown(frame);
    expectFaces("after a thousand wild ones", pair);
}

TEST_F(OverlayGl, withoutAFontBoxesStand) {
    begin(folder.save("font", {'n', 'o'}));
    expectFaces("no font", pair, FACE_BOX);
    global.setFontPath(serifFont);
    expectFaces("a font that comes too late", pair, FACE_BOX);
}

TEST_F(OverlayGl, labelsAllocateNothingPerFrame) {
    begin();
    const std::vector<FaceItem> ten(10, {0, 1, 30, 50, 40, 60, 60, "longer than 15 letters"});
    const SwapHook hook(countAllocations);
    setItems(ten.data(), ten.size(), facesKind);
    for (int i = 0; i < 5; ++i) shown(frame);
    const int grown = allocations();
    for (int i = 0; i < 20; ++i) shown(frame);
    EXPECT_EQ(allocations(), grown);
    bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_FLAT);
    EXPECT_GT(allocations(), grown) << "the count counts";
}

TEST_F(OverlayGl, pictureStandsInItsRectangle) {
    begin();
    for (const int rotation : {0, 90, 180, 270}) {
        bus.setConfig(DCFG_ROTATION, rotation);
        for (const int rows : {2, -2}) {
            for (const int bits : {24, 32}) {
                overlay({0.25f, 0.5f, 0.5f, 0.125f}, makeBmp(3, rows, bits, logoPixel));
                const bool isUpsideDown = rows > 0 && rotation % 180 != 0;
                expectMarks(testing::PrintToString(std::array{rotation, rows, bits}),
                            {logo(-0.5, 0, 0.5, -0.25, isUpsideDown, bits == 24)}, {rotation});
            }
        }
    }
}

TEST_F(OverlayGl, zoomToARectangleShowsThePictureTwice) {
    begin();
    global.setRectZoom(true);
    const RectItem middle{160, 120, 320, 240};  // zoomed to twice
    setItems(&middle, 1, rectsKind);
    overlay({0.25f, 0.25f, 0.25f, 0.25f}, makeBmp(3, -2, 32, logoPixel));
    expectMarks("in its place and in the inset",
                {logo(-1, 1, 0, 0, false, false), logo(0.55, -0.55, 0.7, -0.7, false, false)});
}

TEST_F(OverlayGl, keepsAndDropsThePictureByWhatComes) {
    begin();
    const OverlayRect whole{0, 0, 1, 1};
    Bytes bmp = makeBmp(3, -2, 24, logoPixel);
    const auto turned = [](int x, int y) { return logoPixel(2 - x, 1 - y); };
    const std::vector<Mark> first = {logo(-1, 1, 1, -1, false, true)}, second = {logo(-1, 1, 1, -1, true, true)};
    overlay(whole, bmp);
    expectMarks("the first", first);
    const std::string endless = std::string(sizeof whole, '\0') + folder.save("logo.bmp", makeBmp(3, -2, 24, turned));
    for (const int size : {static_cast<int>(endless.size()), 17, 16, 15, 1}) {
        bus.setConfig(DCFG_OVERLAY_IMAGE, SizeHelp{endless.data(), size});
    }
    bus.setConfig(DCFG_OVERLAY_IMAGE, nullptr);
    expectMarks("replaced on the disk only", first);
    overlay(whole, makeBmp(3, -2, 24, turned));
    expectMarks("the second", second);
    put(bmp, 28, 8, 2);
    overlay(whole, bmp);
    expectMarks("no bit count that is known", second);
    put(bmp, 28, 32, 2);
    overlay(whole, bmp);
    expectMarks("sizes that don't agree", {});
}

}  // namespace
}  // namespace zet::test
