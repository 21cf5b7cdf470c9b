// Snapshots: whose memory, which picture, which way up, which time.

#include <stdlib.h>

#include <algorithm>
#include <limits>

#include "overlay/textfilter.h"
#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

using ZETShow::filterData;
using Bytes = std::vector<std::uint8_t>;

constexpr std::int64_t someTime = 1700000000000;
const char* const fontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

// A record and the buffer that it names, with a guard behind it.
struct Snap {
    Snap(int width, int height) : bytes(static_cast<std::size_t>(width * height * 4 + 64), 77) {
        record.buffer = bytes.data();
        record.bufferSize = width * height * 4;
        record.width = record.height = -3;
    }
    bool isUntouched() const { return record.width == -3 && record.height == -3 && bytes == Bytes(bytes.size(), 77); }
    Color at(int x, int y) const {
        const auto channel = [&](int i) {
            return static_cast<double>(bytes[static_cast<std::size_t>((y * record.width + x) * 4 + i)]);
        };
        return {channel(0), channel(1), channel(2)};
    }

    Bytes bytes;
    SnapData record;
};

class SnapGl : public DisplayTest {
protected:
    void take(Snap& snap, bool sourceFrame, bool postProcess) {
        snap.record.sourceFrame = sourceFrame ? 1 : 0;
        snap.record.postProcess = postProcess ? 1 : 0;
        bus.setConfig(DCFG_SNAP, &snap.record);
    }
    void setMode(int mode) { bus.setConfig(DCFG_RENDER_MODE, mode); }

    // Red in a lens circle and the square round it, green beside.
    const int lensRegion[4] = {5000, 5000, 16 * 10000 / 96, 16 * 10000 / 64};
    const Yuv red{90, 100, 220}, green{150, 60, 60};
    Frame lensFrame{96, 64, [this](int x, int y) { return x >= 28 && x < 68 && y >= 12 && y < 52 ? red : green; }};
};

TEST_F(SnapGl, takesTheFrame) {
    start(200, 120);
    const Frame frame = smoothFrame(96, 70);  // an odd number of chroma rows
    shown(frame);
    for (const bool postProcess : {false, true}) {
        Snap snap(96, 70);
        take(snap, true, postProcess);
        ASSERT_EQ(snap.record.width, 96);
        ASSERT_EQ(snap.record.height, 70);
        for (int y = 0; y < 70; ++y) {
            for (int x = 0; x < 96; ++x) {
                const Color expected = frame.sample((x + 0.5) / 96, (y + 0.5) / 70);
                ASSERT_TRUE(near(snap.at(x, postProcess ? y : 69 - y), expected, 2)) << x << ' ' << y << postProcess;
            }
        }
        EXPECT_EQ(snap.bytes[96 * 70 * 4], 77);
    }
}

TEST_F(SnapGl, refusesWithoutATrace) {
    for (const bool sourceFrame : {false, true}) {
        const auto refuses = [&](const char* when, int missingBytes = 0) {
            Snap snap(96, 64);
            snap.record.bufferSize -= missingBytes;
            take(snap, sourceFrame, true);
            EXPECT_TRUE(snap.isUntouched()) << when << ", frame: " << sourceFrame;
        };
        display.reset();
        bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
        start();
        refuses("no window");
        start(96, 64);
        refuses("no frame");
        shown(smoothFrame(96, 64));
        refuses("one byte short", 1);
        setMode(77);
        refuses("no view");
        setMode(RENDER_MODE_FLAT);
        setWindow();
        refuses("no frame in this window");
        shown(smoothFrame(96, 64));
        drawOut();
        setMode(RENDER_MODE_FLAT);
        if (!sourceFrame) refuses("a view that has drawn nothing");
    }
}

TEST_F(SnapGl, takesAWindowThatHasShrunkSinceItsLastDraw) {
    start(400, 300);
    shown(Frame(96, 64, red));
    drawOut();
    window->resize(120, 80);
    Snap snap(400, 300);
    take(snap, false, true);
    ASSERT_EQ(snap.record.width, 120);
    ASSERT_EQ(snap.record.height, 80);
    for (const auto& [x, y] : {std::pair{2, 2}, {117, 2}, {60, 40}, {117, 77}})
        EXPECT_TRUE(near(snap.at(x, y), toColor(red), 1)) << x << ' ' << y << snap.at(x, y);
}

TEST_F(SnapGl, burnsInTheTimeThatThePlayerGives) {
    setenv("TZ", "UTC0", 1);
    start(320, 240);
    shown(smoothFrame(64, 48));
    const struct {
        const char* name;
        std::int64_t start;
        int offset;
        std::string font;
        std::int64_t written;  // 0 for none
    } cases[] = {
        {"later", someTime, 86400000, fontFile, someTime + 86400000},
        {"before 1970", 1000, -5000, fontFile, -4000},
        {"no start time", 0, 5000, fontFile, 0},
        {"no font", someTime, 0, "", 0},
        {"no such time", std::numeric_limits<std::int64_t>::max(), 1, fontFile, 0},
    };
    Snap plain(320, 240);
    take(plain, false, true);
    for (const auto& one : cases) {
        global.setStartTime4WaterMarker(one.start);
        global.setFontPath(one.font);
        Snap snap(320, 240);
        snap.record.timeOffset = one.offset;
        take(snap, false, true);
        Bytes expected = plain.bytes;
        if (one.written != 0) filterData(one.written, expected.data(), 320, 240, 320 * 4, fontFile, 26);
        EXPECT_TRUE(snap.bytes == expected) << one.name;
        EXPECT_EQ(snap.bytes == plain.bytes, one.written == 0) << one.name;
    }
}

TEST_F(SnapGl, leavesTheWholeOfACutFrameToThePlayer) {
    const struct {
        const char* name;
        int width, height;
        bool postProcess, written;
    } cases[] = {{"as it is", 120, 80, false, false},
                 {"with a timestamp", 120, 80, true, true},
                 {"no width", 0, 80, true, false},
                 {"larger than the buffer by a row", 120, 81, true, false},
                 {"a product of 0 in 32 bits", 32768, 32768, true, false}};
    lensFrame.record.lensRegion = lensRegion;
    global.setStartTime4WaterMarker(someTime);
    global.setFontPath(fontFile);
    setMode(RENDER_MODE_HALF_SPHERE);
    start(200, 120);
    shown(lensFrame);
    Snap nobody(120, 80);
    take(nobody, true, true);
    EXPECT_TRUE(nobody.isUntouched()) << "nobody answers";

    int asked = 0;
    for (const auto& one : cases) {
        const auto answer = [&](DisplayConfig&, DisplayConfigUserData& delivery) {
            auto* const record = delivery.getRecord<SnapData>();
            record->width = one.width;
            record->height = one.height;
            for (int i = 0; i < record->bufferSize; ++i) record->buffer[i] = static_cast<std::uint8_t>(i % 251);
            return ++asked;
        };
        DisplayConfigKit player(&bus);
        player.regist(DCFG_FRAME_READ, answer, DCFG_FLAG_EVENT);
        Snap snap(120, 80);
        take(snap, true, one.postProcess);
        EXPECT_EQ(snap.record.height, one.height) << one.name;
        Bytes expected(snap.bytes.size(), 77);  // rows are as the player has left them
        for (std::size_t i = 0; i < 120 * 80 * 4; ++i) expected[i] = static_cast<std::uint8_t>(i % 251);
        if (one.written) filterData(someTime, expected.data(), 120, 80, 120 * 4, fontFile, 26);
        EXPECT_TRUE(snap.bytes == expected) << one.name;
    }
    EXPECT_EQ(asked, 5);
    actBetweenDraws([&] {
        bus.setConfig(DCFG_YUV_FRAME, &lensFrame.record);
        take(nobody, true, true);
    });
    EXPECT_TRUE(nobody.isUntouched()) << "drawn or not";
}

TEST_F(SnapGl, showsTheLensRegionAloneAndLeavesNothingOfItToTheNextWindow) {
    lensFrame.record.lensRegion = lensRegion;
    setMode(RENDER_MODE_HALF_SPHERE);
    start(200, 120);
    const auto isGreen = [](const Color& color) { return color.g > color.r + 20; };
    const auto isRed = [](const Color& color) { return color.r > color.g + 20; };
    const Picture picture = shown(lensFrame);
    EXPECT_TRUE(std::ranges::any_of(picture.pixels, isRed) && std::ranges::none_of(picture.pixels, isGreen));
    setWindow();
    redraw();
    Snap nothing(200, 120);
    take(nothing, false, false);
    EXPECT_TRUE(nothing.isUntouched());
}

}  // namespace
}  // namespace zet::test
