#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "display/display.h"
#include "render/render.h"
#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::ZETShow {

namespace {

using test::CallLog;
using test::Color;
using test::Frame;
using test::Yuv;

// Mesa's bilinear weights have 8 bits: in each direction off by up to 1/256 of the contrast of neighbours, 200 here.
constexpr double samplingTolerance = 3.0;

// Next to every place is another colour.
Frame sharpFrame(int lineSize) {
    const auto paint = [](int x, int y) { return Yuv{20 + (13 * x + 29 * y) % 200, 120 + x % 16, 120 + y % 16}; };
    return Frame(96, 64, paint, lineSize);
}

// A view with nothing of its own: what is tested belongs to the base.
class BareView final : public Render {
public:
    using Render::Render;
    int render(int, int, int, int, Texture&) override { return 0; }
    int init() override { return 0; }
    int createProgram() override { return 0; }
    void lookAt(int x, int y, int width, int height) {
        _viewport = {x, y, width, height};
        glViewport(x, y, width, height);
    }
};

// A frame in GL, as the display uploads it.
struct UploadedFrame {
    explicit UploadedFrame(const Frame& frame) : width(frame.record.width), height(frame.record.height) {
        const YUV420PData& record = frame.record;
        std::vector<std::uint8_t> chroma;
        for (int i = 0; i < record.uvLineSize * height / 2; ++i) {
            chroma.push_back(record.u[i]);
            chroma.push_back(record.v[i]);
        }
        glGenTextures(2, texture.textures);
        texture.upload(0, record.y, GL_LUMINANCE, record.yLineSize, height);
        texture.upload(1, chroma.data(), GL_LUMINANCE_ALPHA, record.uvLineSize, height / 2);
        texture.textureSize = 2;
    }
    ~UploadedFrame() { texture.clear(); }

    int width;
    int height;
    Texture texture;
};

struct Pixels {
    Pixels(int width, int height) : lineSize(width), bytes(static_cast<std::size_t>(width * height * 4)) {}
    int size() const { return static_cast<int>(bytes.size()); }
    Color at(int x, int y) const {
        const std::uint8_t* const pixel = &bytes[static_cast<std::size_t>((y * lineSize + x) * 4)];
        return {static_cast<double>(pixel[0]), static_cast<double>(pixel[1]), static_cast<double>(pixel[2])};
    }

    int lineSize;
    std::vector<std::uint8_t> bytes;
};

class RenderOffscreenTest : public test::DisplayTest {
protected:
    // Runs on the render thread, in a window of 60 by 40, with a view of that context.
    void withView(const std::function<void(BareView&)>& work) {
        start(60, 40);
        auto& owner = dynamic_cast<Display&>(*display);
        owner.postTask([&] {
            BareView view(&bus, 1.0f, &owner);
            work(view);
            return 0;
        });
    }
};

TEST_F(RenderOffscreenTest, StretchesTheRectangleToTheFrame) {
    constexpr int huge = 1000000000;
    const struct {
        const char* name;
        int lineSize;
        CropParam crop;
    } cases[] = {
        {"inside", 96, {20, 10, 48, 40}},
        {"whole", 96, {0, 0, 96, 64}},
        {"padded lines", 128, {30, 6, 50, 50}},
        {"over the right and bottom edges", 96, {60, 40, 60, 60}},
        {"over the left and top edges", 96, {-30, -20, 60, 60}},
        {"beyond the frame", 96, {300, 200, 50, 50}},
        {"of no size", 96, {40, 20, 0, 0}},
        {"of negative size", 96, {70, 50, -40, -30}},
        {"huge", 96, {huge, huge, huge, huge}},
        {"huge and negative", 96, {huge, huge, -huge, -huge}},
    };
    withView([&](BareView& view) {
        for (const auto& c : cases) {
            SCOPED_TRACE(c.name);
            const Frame frame = sharpFrame(c.lineSize);
            UploadedFrame uploaded(frame);
            Texture& texture = uploaded.texture;
            view.lookAt(3, 4, 50, 30);
            ASSERT_EQ(view.cropTexture(texture, 96, 64, &c.crop), 0);
            EXPECT_EQ(texture.textureSize, 1);
            EXPECT_EQ(texture.current, texture.cropTextures);

            Pixels cut(96, 64);
            glReadPixels(0, 0, 96, 64, GL_RGBA, GL_UNSIGNED_BYTE, cut.bytes.data());
            glBindFramebuffer(GL_FRAMEBUFFER, 0);
            for (int y = 0; y < 64; ++y) {
                for (int x = 0; x < 96; ++x) {
                    const double u = (c.crop.x + (x + 0.5) / 96 * c.crop.width) / 96;
                    const double v = (c.crop.y + (y + 0.5) / 64 * c.crop.height) / 64;
                    ASSERT_TRUE(near(cut.at(x, y), frame.sample(u, v), samplingTolerance))
                        << x << ' ' << y << ' ' << cut.at(x, y) << " instead of " << frame.sample(u, v);
                }
            }
            GLint viewport[4] = {};
            glGetIntegerv(GL_VIEWPORT, viewport);
            EXPECT_EQ(std::vector<int>(viewport, viewport + 4), (std::vector<int>{3, 4, 50, 30}));
            // A cut picture can be read as it stands: row 0 at its top.
            Pixels read(96, 64);
            ASSERT_EQ(view.readTexture(texture, read.bytes.data(), read.size(), 96, 64), 0);
            EXPECT_EQ(read.bytes, cut.bytes);
        }
    });
}

TEST_F(RenderOffscreenTest, RefusesWhatDoesNotHoldThePicture) {
    constexpr int wholeSize = 96 * 64 * 4;
    const struct {
        const char* name;
        int size, width, height;
        int result;
    } cases[] = {
        {"exact", wholeSize, 96, 64, 0},
        {"one byte short", wholeSize - 1, 96, 64, -1},
        {"no bytes", 0, 96, 64, -1},
        {"fewer than none", -1, 96, 64, -1},
        {"least int", std::numeric_limits<int>::min(), 96, 64, -1},
        {"no width", wholeSize, 0, 64, -1},
        {"negative height", wholeSize, 96, -64, -1},
        {"both negative", wholeSize, -96, -64, -1},
        {"a product of 0 in 32 bits", wholeSize, 32768, 32768, -1},
        {"a product of 1 << 64", wholeSize, std::numeric_limits<int>::min(), std::numeric_limits<int>::min(), -1},
    };
    withView([&](BareView& view) {
        UploadedFrame uploaded(sharpFrame(96));
        for (const auto& c : cases) {
            SCOPED_TRACE(c.name);
            const CallLog log;
            std::vector<std::uint8_t> bytes(wholeSize + 4, 77);
            const std::vector<std::uint8_t> untouched = bytes;
            EXPECT_EQ(view.readTexture(uploaded.texture, bytes.data(), c.size, c.width, c.height), c.result);
            EXPECT_EQ(log.lines().empty(), c.result != 0);
            EXPECT_EQ(bytes == untouched, c.result != 0);
            EXPECT_EQ(bytes.back(), 77);

            bytes = untouched;
            int width = 5;
            int height = 6;
            view.lookAt(0, 0, c.width, c.height);
            EXPECT_EQ(view.readScreen(bytes.data(), c.size, &width, &height), c.result);
            EXPECT_EQ(bytes == untouched, c.result != 0);
            EXPECT_EQ(width, c.result != 0 ? 5 : 96);
        }
        int size = 0;
        EXPECT_EQ(view.readTexture(uploaded.texture, nullptr, wholeSize, 96, 64), -1);
        EXPECT_EQ(view.readScreen(nullptr, wholeSize, &size, &size), -1);
    });
}

}  // namespace

}  // namespace zet::ZETShow
