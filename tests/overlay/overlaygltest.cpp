// Faces, labels and a player's picture over the flat view, pixel by pixel against a drawing of the test's own.

#include <unistd.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "overlay/bmp.h"
#include "overlay/glyphs.h"
#include "support/allocations.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

constexpr int width = 640, height = 480;
constexpr double tolerance = 6;  // of 255: the rasteriser places corners and filters in steps of 1/256

struct View {
    int rotation = 0;
    double scale = 1;
};

struct Point {
    double x, y;
};

struct Rect {
    double left, top, right, bottom;
};

struct Mark {
    Rect rect;  // pixels
    Color color;
    std::optional<Block> text;  // without one it is a box
};

// Where the picture that stands at (x, y) of its rectangle, from the top left corner, has it once turned clockwise.
Point turned(int rotation, double x, double y) {
    if (rotation == 90) return {y, 1 - x};
    if (rotation == 180) return {1 - x, 1 - y};
    if (rotation == 270) return {1 - y, x};
    return {x, y};
}

Color mix(const Color& below, const Color& above, double share) {
    return {std::lerp(below.r, above.r, share), std::lerp(below.g, above.g, share), std::lerp(below.b, above.b, share)};
}

FaceItem makeFace(int gender, unsigned age, int x, int y, int w, int h, const char* name) {
    FaceItem face{0x21212121, gender, age, x, y, w, h};
    std::memcpy(face.name, name, strnlen(name, sizeof face.name));
    return face;
}

class OverlayGl : public DisplayTest {
protected:
    void begin(const char* font = serifFont) {
        global.setFontPath(font);
        start(width, height);
    }
    void TearDown() override {
        DisplayTest::TearDown();
        std::filesystem::remove(file);
    }
    Picture showFaces(const std::vector<FaceItem>& faces) {
        frame.record.aiItems = faces.data();
        frame.record.aiCount = static_cast<int>(faces.size());
        frame.record.aiKind = &facesKind;
        return shown(frame);
    }
    void overlay(const OverlayRect& rect) { bus.setConfig(DCFG_OVERLAY_IMAGE, SizeHelp{&rect, sizeof rect}, file); }

    // A rectangle of the video quad, -1 to 1 and y upward, in pixels of the window.
    static Rect onScreen(const Rect& quad, const View& view) {
        const double share = view.rotation % 180 == 0 ? 1 : static_cast<double>(height * height) / (width * width);
        const auto x = [&](double at) { return (at * view.scale * share + 1) / 2 * width; };
        const auto y = [&](double at) { return (1 - at * view.scale) / 2 * height; };
        return {x(quad.left), y(quad.top), x(quad.right), y(quad.bottom)};
    }

    // What stands over the video, in the order in which it is drawn.
    std::vector<Mark> marksOf(const std::vector<FaceItem>& faces, int option, bool font, const View& view) {
        std::vector<Mark> marks;
        const bool lying = view.rotation % 180 == 0;
        const double w = lying ? width : height, h = lying ? height : width;
        for (const FaceItem& f : faces) {
            const Color color = f.gender == 0 ? Color{255, 0, 0} : Color{0, 255, 0};
            const Rect box = {(f.x - 0.2 * f.width) / w * 2 - 1, 1 - (f.y - 0.2 * f.height) / h * 2,
                              (f.x + 1.2 * f.width) / w * 2 - 1, 1 - (f.y + 1.2 * f.height) / h * 2};
            if (option & FACE_BOX) marks.push_back({onScreen(box, view), color, {}});
            std::vector<std::string> lines;
            if (option & FACE_NAME && f.name[0]) lines.emplace_back(f.name, strnlen(f.name, sizeof f.name));
            if (option & FACE_GENDER) lines.emplace_back(f.gender ? "male" : "female");
            if (option & FACE_AGE) lines.push_back(std::to_string(f.age));
            double top = (box.top + box.bottom) / 2 + 0.05 * static_cast<double>(lines.size());
            for (const std::string& line : lines) {
                if (font && line[0] > 0) {
                    const Block block = glyphs.block(line);
                    const double left = box.right + 0.01, aspect = block.rowBytes / (block.rows * 1.5);
                    marks.push_back({onScreen({left, top, left + 0.1 * aspect, top - 0.1}, view), color, block});
                }
                top -= 0.1;
            }
        }
        return marks;
    }
    void expectFaces(const std::vector<FaceItem>& faces, int option, bool font, const View& view, const char* name) {
        const std::vector<Mark> marks = marksOf(faces, option, font, view);
        const Picture screen = window->grab();
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const std::optional<Color> expected = colorAt(x + 0.5, y + 0.5, marks, view);
                ASSERT_TRUE(!expected || near(screen.at(x, y), *expected, tolerance))
                    << name << ", option " << option << " at " << x << ' ' << y << screen.at(x, y) << *expected;
            }
        }
    }
    // Nothing on a rim, whose pixels belong to either side.
    static std::optional<Color> colorAt(double x, double y, const std::vector<Mark>& marks, const View& view) {
        const auto inside = [x, y](const Rect& r) {
            return std::min({x - r.left, r.right - x, y - r.top, r.bottom - y});
        };
        Color color = inside(onScreen({-1, 1, 1, -1}, view)) > 0 ? toColor(ground) : Color{};
        for (const auto& [rect, ink, text] : marks) {
            const double depth = inside(rect);
            if (!text) {
                const double x0 = std::min(std::abs(x - rect.left), std::abs(x - rect.right));
                const double y0 = std::min(std::abs(y - rect.top), std::abs(y - rect.bottom));
                if (std::abs(depth) > 3) continue;
                if (std::abs(depth) > 0.9 || x0 + y0 < 5) return {};
                color = ink;
                continue;
            }
            if (std::abs(depth) < 0.02) return {};
            if (depth < 0) continue;
            const Point at = turned(view.rotation, (x - rect.left) / (rect.right - rect.left),
                                    (y - rect.top) / (rect.bottom - rect.top));
            color = mix(color, ink, sample(*text, at));
        }
        return color;
    }
    static double sample(const Block& block, const Point& at) {
        const double x = at.x * block.rowBytes - 0.5, y = at.y * block.rows - 0.5;
        const auto texel = [&block](double column, double row) {
            const int c = std::clamp(static_cast<int>(column), 0, block.rowBytes - 1);
            const int r = std::clamp(static_cast<int>(row), 0, block.rows - 1);
            return block.pixels[static_cast<std::size_t>(r * block.rowBytes + c)] / 255.0;
        };
        const double left = std::floor(x), top = std::floor(y);
        return std::lerp(std::lerp(texel(left, top), texel(left + 1, top), x - left),
                         std::lerp(texel(left, top + 1), texel(left + 1, top + 1), x - left), y - top);
    }

    // `picture` over the ground in a rectangle of the video quad. Bottom row first means: mirrored in a mirrored place.
    void expectOverlay(const Picture& screen, const Rect& quad, int rotation, bool mirrored, bool opaque) {
        const Rect at = onScreen(quad, {rotation});
        for (int i = 0; i < 36; ++i) {
            const double x = (i % 6 + 0.5) / 6, y = (i / 6 + 0.5) / 6;
            const Point in = turned(rotation, x, mirrored ? 1 - y : y);
            const std::uint32_t argb =
                picture(static_cast<int>(in.x * 3), static_cast<int>((mirrored ? 1 - in.y : in.y) * 2));
            const auto channel = [argb](int shift) { return static_cast<double>(argb >> shift & 255u); };
            const Color color = {channel(16), channel(8), channel(0)};
            const Color& seen = screen.at(static_cast<int>(std::lerp(at.left, at.right, x)),
                                          static_cast<int>(std::lerp(at.top, at.bottom, y)));
            ASSERT_TRUE(near(seen, mix(toColor(ground), color, opaque ? 1 : channel(24) / 255), 2))
                << "turned by " << rotation << (mirrored ? ", bottom row first" : "") << " at " << x << ' ' << y
                << seen;
        }
    }
    static std::uint32_t picture(int x, int y) {
        constexpr std::uint32_t pixels[2][3] = {{0xffff0000, 0x8000ff00, 0x40ffffff},
                                                {0x000000ff, 0xc0ffff00, 0xff102030}};
        return pixels[y][x];
    }

    static constexpr Yuv ground{120, 150, 100};
    Frame frame{width, height, ground};
    const int facesKind = AI_KIND_FACES, rectsKind = AI_KIND_RECTS;
    Font glyphs{serifFont};
    const std::string file = testing::TempDir() + "zet overlay " + std::to_string(getpid()) + ".bmp";
    const std::vector<FaceItem> pair = {makeFace(1, 42, 60, 60, 100, 120, "Jim J."),
                                        makeFace(0, 7, 330, 260, 100, 100, "")};
};

TEST_F(OverlayGl, drawsWhatTheOptionAsksFor) {
    begin();
    for (int option = 0; option < 16; ++option) {
        bus.setConfig(DCFG_FACE_OPTION, option);
        bus.setConfig(DCFG_RENDER_MODE, 0);  // a new view, which takes the new option
        showFaces(pair);
        expectFaces(pair, option, true, {}, "fresh view");
    }
    bus.setConfig(DCFG_FACE_OPTION, 1);
    redraw();
    expectFaces(pair, 15, true, {}, "frozen since the first face");
    showFaces({});
    expectFaces({}, 15, true, {}, "faces gone");
}

TEST_F(OverlayGl, boxesAndLabelsFollowTheView) {
    bus.setConfig(DCFG_FACE_OPTION, 15);
    begin();
    for (const View& view : {View{0, 2}, View{90, 1}, View{180, 1}, View{270, 1.5}}) {
        bus.setConfig(DCFG_ROTATION, view.rotation);
        bus.setConfig(DCFG_SCALE, view.scale);
        showFaces(pair);
        expectFaces(pair, 15, true, view, ("turned by " + std::to_string(view.rotation)).c_str());
    }
}

TEST_F(OverlayGl, oddNamesAndWildFacesHurtNobody) {
    bus.setConfig(DCFG_FACE_OPTION, 15);
    begin();
    const std::vector<FaceItem> odd = {makeFace(0, 4294967295u, 20, 40, 60, 60, "0123456789 not ended by a NUL...abc"),
                                       makeFace(2, 9, 20, 300, 100, 100, "\xc3\x89va")};
    showFaces(odd);
    expectFaces(odd, 15, true, {}, "a name without an end, one that is refused");
    std::vector<FaceItem> wild;
    const int numbers[] = {INT_MIN, -100000, -1, 0, 1, 70000, INT_MAX};
    for (int i = 0; i < 1000; ++i) {
        wild.push_back(makeFace(i, 1, numbers[i % 7], numbers[i / 7 % 7], numbers[i / 3 % 7], numbers[i / 5 % 7], "x"));
    }
    showFaces(wild);
    showFaces(pair);
    expectFaces(pair, 15, true, {}, "after a thousand wild ones");
}

TEST_F(OverlayGl, withoutAFontBoxesStand) {
    bus.setConfig(DCFG_FACE_OPTION, 15);
    save(file, {'n', 'o', ' ', 'f', 'o', 'n', 't'});
    begin(file.c_str());
    showFaces(pair);
    global.setFontPath(serifFont);
    showFaces(pair);
    expectFaces(pair, 15, false, {}, "a font that comes too late");
}

TEST_F(OverlayGl, labelsAllocateNothingPerFrame) {
    bus.setConfig(DCFG_FACE_OPTION, 15);
    begin();
    std::vector<FaceItem> ten;
    for (int i = 0; i < 10; ++i) ten.push_back(makeFace(i % 2, 30, 50 * i, 40 * i, 60, 60, "longer than 15 letters"));
    const SwapHook hook(countAllocations);
    for (int i = 0; i < 5; ++i) showFaces(ten);
    const int grown = allocations();
    for (int i = 0; i < 20; ++i) showFaces(ten);
    EXPECT_EQ(allocations(), grown);
    bus.setConfig(DCFG_RENDER_MODE, 0);
    EXPECT_GT(allocations(), grown) << "the count counts";
}

TEST_F(OverlayGl, pictureStandsInItsRectangle) {
    begin();
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    for (const int rotation : {0, 90, 180, 270}) {
        bus.setConfig(DCFG_ROTATION, rotation);
        for (const int rows : {2, -2}) {
            for (const int bits : {24, 32}) {
                save(file, makeBmp(3, rows, bits, picture));
                overlay({0.25f, 0.5f, 0.5f, 0.125f});
                expectOverlay(shown(), {-0.5, 0, 0.5, -0.25}, rotation, rows > 0, bits == 24);
            }
        }
    }
}

TEST_F(OverlayGl, zoomToARectangleShowsThePictureTwice) {
    begin();
    global.setRectZoom(true);
    const RectItem middle{160, 120, 320, 240};  // zoomed to twice
    frame.record.aiItems = &middle;
    frame.record.aiCount = 1;
    frame.record.aiKind = &rectsKind;
    save(file, makeBmp(3, -2, 32, picture));
    overlay({0.25f, 0.25f, 0.25f, 0.25f});
    const Picture screen = shown(frame);
    expectOverlay(screen, {-1, 1, 0, 0}, 0, false, false);
    expectOverlay(screen, {0.55, -0.55, 0.7, -0.7}, 0, false, false);
}

TEST_F(OverlayGl, keepsAndDropsThePictureByWhatComes) {
    begin();
    bus.setConfig(DCFG_YUV_FRAME, &frame.record);
    const OverlayRect whole{0, 0, 1, 1};
    const Rect quad{-1, 1, 1, -1};
    Bytes bmp = makeBmp(3, -2, 24, picture);
    save(file, bmp);
    overlay(whole);
    expectOverlay(shown(), quad, 0, false, true);
    save(file, makeBmp(3, -2, 24, [](int x, int y) { return picture(2 - x, 1 - y); }));
    expectOverlay(shown(), quad, 0, false, true);
    // Records that end too early: the first would name the file.
    Bytes record(sizeof whole + file.size());
    std::memcpy(record.data(), &whole, sizeof whole);
    std::memcpy(record.data() + sizeof whole, file.data(), file.size());
    for (const std::size_t size : {record.size(), sizeof whole + 1, sizeof whole, sizeof whole - 1, std::size_t{1}}) {
        bus.setConfig(DCFG_OVERLAY_IMAGE, SizeHelp{record.data(), static_cast<int>(size)});
    }
    bus.setConfig(DCFG_OVERLAY_IMAGE, nullptr);
    expectOverlay(shown(), quad, 0, false, true);
    overlay(whole);
    expectOverlay(shown(), quad, 180, false, true);
    put(bmp, 28, 8, 2);  // no bit count that is known: the picture stays
    save(file, bmp);
    overlay(whole);
    expectOverlay(shown(), quad, 180, false, true);
    put(bmp, 28, 32, 2);  // sizes that don't agree: it goes
    save(file, bmp);
    overlay(whole);
    EXPECT_TRUE(near(shown().at(5, 5), toColor(ground), 1));
}

}  // namespace
}  // namespace zet::test
