// Pictures beside the window: the cut of a frame, and pixels back to memory.

#include <GLES2/gl2.h>
#include <gmock/gmock.h>

#include <limits>

#include "display/display.h"
#include "render/render.h"
#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::ZETShow {
namespace {

using test::Color;
using test::Frame;
using test::Yuv;

// Mesa's bilinear weights have 8 bits: in each direction off by up to 1/256 of the contrast of neighbours, 200 here.
constexpr double samplingTolerance = 3.0;
constexpr int width = 96, height = 64, wholeSize = width * height * 4;

// A view with nothing of its own: what is tested belongs to the base.
class BareView final : public Render {
public:
    using Render::Render;
    int render(int, int, int, int, Texture&) override { return 0; }
    int init() override { return 0; }
    int createProgram() override { return 0; }
    void lookAt(const Viewport& viewport) {
        _viewport = viewport;
        glViewport(viewport.x, viewport.y, viewport.width, viewport.height);
    }
};

class RenderOffscreen : public test::DisplayTest {
protected:
    // Next to every place is another colour.
    static Frame makeFrame(int lineSize) {
        const auto paint = [](int x, int y) { return Yuv{20 + (13 * x + 29 * y) % 200, 120 + x % 16, 120 + y % 16}; };
        return Frame(width, height, paint, lineSize);
    }
    // As the display does it.
    static void upload(const Frame& frame, Texture& texture) {
        const YUV420PData& record = frame.record;
        std::vector<std::uint8_t> chroma;
        for (int i = 0; i < record.uvLineSize * height / 2; ++i) {
            chroma.insert(chroma.end(), {record.u[i], record.v[i]});
        }
        glGenTextures(2, texture.textures);
        texture.upload(0, record.y, GL_LUMINANCE, record.yLineSize, height);
        texture.upload(1, chroma.data(), GL_LUMINANCE_ALPHA, record.uvLineSize, height / 2);
        texture.textureSize = 2;
    }
    // Runs on the render thread, with a view of that context.
    template <typename Work>
    void withView(const Work& work) {
        start(60, 40);
        auto& owner = dynamic_cast<Display&>(*display);
        owner.postTask([&] {
            BareView view(&bus, 1.0f, &owner);
            work(view);
            return 0;
        });
    }
};

TEST_F(RenderOffscreen, stretchesTheRectangleToTheFrame) {
    constexpr int huge = 1000000000;
    const struct {
        const char* name;
        int lineSize;
        CropParam crop;
    } cases[] = {
        {"inside", 96, {20, 10, 48, 40}},
        {"padded lines", 128, {30, 6, 50, 50}},
        {"over the right and bottom edges", 96, {60, 40, 60, 60}},
        {"over the left and top edges", 96, {-30, -20, 60, 60}},
        {"of no size", 96, {40, 20, 0, 0}},
        {"of negative size", 96, {70, 50, -40, -30}},
        {"huge", 96, {huge, huge, huge, huge}},
    };
    withView([&](BareView& view) {
        for (const auto& [name, lineSize, crop] : cases) {
            const Frame frame = makeFrame(lineSize);
            Texture texture;
            upload(frame, texture);
            view.lookAt({3, 4, 50, 30});
            ASSERT_EQ(view.cropTexture(texture, width, height, &crop), 0) << name;
            EXPECT_EQ(texture.textureSize, 1) << name;
            EXPECT_EQ(texture.current, texture.cropTextures) << name;
            GLint viewport[4] = {};
            glGetIntegerv(GL_VIEWPORT, viewport);
            EXPECT_THAT(viewport, testing::ElementsAre(3, 4, 50, 30)) << name;

            std::vector<std::uint8_t> bytes(wholeSize);
            ASSERT_EQ(view.readTexture(texture, bytes.data(), wholeSize, width, height), 0) << name;
            for (int i = 0; i < width * height; ++i) {
                const double x = i % width + 0.5, y = i / width + 0.5;  // row 0 at the top
                const Color expected = frame.sample((crop.x + x / width * crop.width) / width,
                                                    (crop.y + y / height * crop.height) / height);
                const auto channel = [&](int c) {
                    return static_cast<double>(bytes[static_cast<std::size_t>(i * 4 + c)]);
                };
                const Color seen = {channel(0), channel(1), channel(2)};
                ASSERT_TRUE(near(seen, expected, samplingTolerance)) << name << x << ' ' << y << seen << expected;
            }
            texture.clear();
        }
    });
}

TEST_F(RenderOffscreen, refusesWhatDoesNotHoldThePicture) {
    constexpr int least = std::numeric_limits<int>::min();
    const struct {
        const char* name;
        int size, width, height;
        int result;
    } cases[] = {
        {"exact", wholeSize, width, height, 0},
        {"one byte short", wholeSize - 1, width, height, -1},
        {"no bytes", 0, width, height, -1},
        {"least int", least, width, height, -1},
        {"no width", wholeSize, 0, height, -1},
        {"both negative", wholeSize, -width, -height, -1},
        {"a product of 0 in 32 bits", wholeSize, 32768, 32768, -1},
        {"a product of 1 << 64", wholeSize, least, least, -1},
    };
    withView([&](BareView& view) {
        Texture texture;
        upload(makeFrame(width), texture);
        const std::vector<std::uint8_t> untouched(wholeSize + 4, 77);
        for (const auto& one : cases) {
            const test::CallLog log;
            auto bytes = untouched;
            EXPECT_EQ(view.readTexture(texture, bytes.data(), one.size, one.width, one.height), one.result) << one.name;
            EXPECT_EQ(log.lines().empty(), one.result != 0) << one.name;
            EXPECT_EQ(bytes == untouched, one.result != 0) << one.name;
            EXPECT_EQ(bytes.back(), 77) << one.name;

            bytes = untouched;
            int seenWidth = 5, seenHeight = 6;
            view.lookAt({0, 0, one.width, one.height});
            EXPECT_EQ(view.readScreen(bytes.data(), one.size, &seenWidth, &seenHeight), one.result) << one.name;
            EXPECT_EQ(bytes == untouched, one.result != 0) << one.name;
            EXPECT_EQ(seenWidth, one.result != 0 ? 5 : width) << one.name;
        }
        int size = 0;
        EXPECT_EQ(view.readTexture(texture, nullptr, wholeSize, width, height), -1);
        EXPECT_EQ(view.readScreen(nullptr, wholeSize, &size, &size), -1);
        texture.clear();
    });
}

}  // namespace
}  // namespace zet::ZETShow
