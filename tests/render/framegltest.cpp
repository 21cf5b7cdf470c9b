// A frame in GL: what a program finds at a place of the lens region, before and after a change of size and colour.

#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include "display/display.h"
#include "render/mesh.h"
#include "render/program.h"
#include "render/shaderpieces.h"
#include "support/displaytest.h"

namespace zet::ZETShow {
namespace {

using test::Color;
using test::Yuv;

// Mesa's bilinear weights have 8 bits: in each direction off by up to 1/256 of the contrast of neighbours, 200 here.
constexpr double samplingTolerance = 3.0;
constexpr float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const char* const mainStep = "void main() { gl_FragColor = sampleLens(v_texCoord); }";
constexpr std::array<MeshVertex, 4> corners = {
    {{{-1, 1, 0}, {-1, -1}}, {{1, 1, 0}, {1, -1}}, {{-1, -1, 0}, {-1, 1}}, {{1, -1, 0}, {1, 1}}}};

// Next to every place is another colour.
test::Frame makeFrame(int width, int height, int lineSize) {
    const auto paint = [](int x, int y) { return Yuv{20 + (13 * x + 29 * y) % 200, 120 + x % 16, 120 + y % 16}; };
    return test::Frame(width, height, paint, lineSize);
}

// As the display does it.
void upload(const YUV420PData& record, Frame& frame) {
    std::vector<std::uint8_t> chroma;
    for (int i = 0; i < record.uvLineSize * record.height / 2; ++i) {
        chroma.insert(chroma.end(), {record.u[i], record.v[i]});
    }
    frame.setSize(record.width, record.height, record.yLineSize);
    frame.upload(record.y, record.yLineSize, chroma.data(), record.uvLineSize, record.height);
}

using FrameGl = test::DisplayTest;

TEST_F(FrameGl, isSampledWithinItsLensRegion) {
    constexpr int width = 96, height = 64, huge = 1000000000;
    const struct {
        const char* name;
        int frameWidth, frameHeight, lineSize;
        CropParam crop;
    } cases[] = {
        {"inside", 96, 64, 96, {20, 10, 48, 40}},
        {"another place in textures of that size", 96, 64, 96, {0, 10, 30, 40}},
        {"padded lines", 96, 64, 128, {30, 6, 50, 50}},
        {"a larger picture", 192, 128, 192, {60, 40, 60, 60}},
        {"over the right and bottom edges", 96, 64, 96, {60, 40, 60, 60}},
        {"over the left and top edges", 96, 64, 96, {-30, -20, 60, 60}},
        {"of no size", 96, 64, 96, {40, 20, 0, 0}},
        {"of negative size", 96, 64, 96, {70, 50, -40, -30}},
        {"huge", 96, 64, 96, {huge, huge, huge, huge}},
    };
    start(width, height);
    dynamic_cast<Display&>(*display).postTask([&] {
        FrameProgram program;
        Mesh quad;
        Frame frame;
        EXPECT_EQ(program.build(defaultColor, frameVertexStage, {mainStep}), 0);
        quad.load(corners);
        glViewport(0, 0, width, height);
        for (const auto& [name, frameWidth, frameHeight, lineSize, crop] : cases) {
            const test::Frame picture = makeFrame(frameWidth, frameHeight, lineSize);
            upload(picture.record, frame);
            frame.region = mapOntoRegion(crop, frameWidth, frameHeight);
            program.use(frame);
            program.setMatrix(identity);
            quad.bind();
            quad.draw();
            std::vector<std::uint8_t> bytes(width * height * 4);
            glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
            int wrong = 0;
            for (int i = 0; i < width * height; ++i) {
                const double x = (i % width + 0.5) / width, y = 1 - (i / width + 0.5) / height;
                const Color expected =
                    picture.sample((crop.x + x * crop.width) / frameWidth, (crop.y + y * crop.height) / frameHeight);
                const auto channel = [&](int c) {
                    return static_cast<double>(bytes[static_cast<std::size_t>(i * 4 + c)]);
                };
                wrong += !near({channel(0), channel(1), channel(2)}, expected, samplingTolerance);
            }
            EXPECT_EQ(wrong, 0) << name;
        }
        frame.clear();
        EXPECT_FALSE(frame.hasPlanes());
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return 0;
    });
}

}  // namespace
}  // namespace zet::ZETShow
