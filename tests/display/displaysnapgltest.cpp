#include <stdlib.h>

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "overlay/textfilter.h"
#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::ZETShow {

namespace {

using test::CallLog;
using test::Color;
using test::Frame;
using test::Picture;
using test::Yuv;
using Bytes = std::vector<std::uint8_t>;

constexpr int dewarpingMode = 1;
constexpr std::int64_t someTime = 1700000000000;
const char* const fontFile = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

constexpr Yuv reddish{90, 100, 220};
constexpr Yuv greenish{150, 60, 60};

// A record and the buffer that it names, with a guard behind it.
struct Snap {
    explicit Snap(int size = 1 << 20, int guard = 64) : bytes(static_cast<std::size_t>(size + guard), 77) {
        record.buffer = bytes.data();
        record.bufferSize = size;
        record.width = -3;
        record.height = -4;
    }
    bool isUntouched() const { return record.width == -3 && record.height == -4 && bytes == Bytes(bytes.size(), 77); }
    Color at(int x, int y) const {
        const std::uint8_t* const pixel = &bytes[static_cast<std::size_t>((y * record.width + x) * 4)];
        return {static_cast<double>(pixel[0]), static_cast<double>(pixel[1]), static_cast<double>(pixel[2])};
    }

    Bytes bytes;
    SnapData record;
};

class DisplaySnapTest : public test::DisplayTest {
protected:
    void set(Snap& snap, bool sourceFrame, bool postProcess) {
        snap.record.sourceFrame = sourceFrame ? 1 : 0;
        snap.record.postProcess = postProcess ? 1 : 0;
        bus.setConfig(DCFG_SNAP, &snap.record);
    }
    void setMode(int mode) { bus.setConfig(DCFG_RENDER_MODE, mode); }

    // The player's own copy of the frame: `width` by `height`, each byte its place modulo 251.
    void answerFrameReads(int width, int height) {
        player.emplace(&bus);
        player->regist(
            DCFG_FRAME_READ,
            [this, width, height](DisplayConfig&, DisplayConfigUserData& delivery) {
                auto* const record = delivery.getRecord<SnapData>();
                ++frameReads;
                record->width = width;
                record->height = height;
                for (int i = 0; i < record->bufferSize; ++i) record->buffer[i] = static_cast<std::uint8_t>(i % 251);
                return 0;
            },
            DCFG_FLAG_EVENT);
    }

    std::optional<DisplayConfigKit> player;
    int frameReads = 0;
};

TEST_F(DisplaySnapTest, TakesTheFrame) {
    start(200, 120);
    const Frame frame = test::smoothFrame(96, 70);  // an odd number of chroma rows
    shown(frame);
    for (const bool postProcess : {false, true}) {
        SCOPED_TRACE(postProcess);
        Snap snap(96 * 70 * 4);
        set(snap, true, postProcess);
        ASSERT_EQ(snap.record.width, 96);
        ASSERT_EQ(snap.record.height, 70);
        for (int y = 0; y < 70; ++y) {
            for (int x = 0; x < 96; ++x) {
                const Color expected = frame.sample((x + 0.5) / 96, (y + 0.5) / 70);
                ASSERT_TRUE(near(snap.at(x, postProcess ? y : 69 - y), expected, 2)) << x << ' ' << y;
            }
        }
        EXPECT_EQ(snap.bytes.back(), 77);
    }
    EXPECT_EQ(frameReads, 0);
}

TEST_F(DisplaySnapTest, RefusesWithoutATrace) {
    const auto refuses = [this](const char* when, bool sourceFrame, const std::function<void(SnapData&)>& change) {
        Snap snap(96 * 64 * 4);
        if (change) change(snap.record);
        set(snap, sourceFrame, true);
        EXPECT_TRUE(snap.isUntouched()) << when << ", frame: " << sourceFrame;
    };
    answerFrameReads(96, 64);
    for (const bool sourceFrame : {false, true}) {
        display.reset();
        bus.setConfig(DCFG_WINDOW_INSTANCE, nullptr);
        start();
        refuses("no window", sourceFrame, nullptr);
        start(96, 64);
        refuses("no frame", sourceFrame, nullptr);
        shown(test::smoothFrame(96, 64));
        refuses("no buffer", sourceFrame, [](SnapData& snap) { snap.buffer = nullptr; });
        refuses("one byte short", sourceFrame, [](SnapData& snap) { --snap.bufferSize; });
        refuses("no bytes", sourceFrame, [](SnapData& snap) { snap.bufferSize = 0; });
        refuses("least int", sourceFrame, [](SnapData& snap) { snap.bufferSize = std::numeric_limits<int>::min(); });
        bus.setConfig(DCFG_SNAP, nullptr);
        setMode(77);
        refuses("no view", sourceFrame, nullptr);
        setMode(0);
        bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
        refuses("no frame in this window", sourceFrame, nullptr);
        shown(test::smoothFrame(96, 64));
        setMode(0);
        if (!sourceFrame) refuses("view that has drawn nothing", sourceFrame, nullptr);
    }
    EXPECT_EQ(frameReads, 0);
}

TEST_F(DisplaySnapTest, BurnsInTheTimeThatThePlayerGives) {
    setenv("TZ", "UTC0", 1);
    start(320, 240);
    shown(test::smoothFrame(64, 48));
    const struct {
        const char* name;
        std::int64_t start;
        int offset;
        std::string font;
        std::int64_t written;  // 0 for none
    } cases[] = {
        {"start", someTime, 0, fontFile, someTime},
        {"later", someTime, 86400000, fontFile, someTime + 86400000},
        {"earlier", someTime, -3600000, fontFile, someTime - 3600000},
        {"before 1970", 1000, -5000, fontFile, -4000},
        {"at 1970", 1000, -1000, fontFile, 1},
        {"no start time", 0, 5000, fontFile, 0},
        {"no font", someTime, 0, "", 0},
        {"font that isn't there", someTime, 0, "/no/font.ttf", 0},
        {"no such time", std::numeric_limits<std::int64_t>::max(), 1, fontFile, 0},
    };
    Snap plain(320 * 240 * 4);
    set(plain, false, true);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        global.setStartTime4WaterMarker(c.start);
        global.setFontPath(c.font);
        Snap snap(320 * 240 * 4);
        snap.record.timeOffset = c.offset;
        set(snap, false, true);
        Bytes expected = plain.bytes;
        if (c.written != 0) filterData(c.written, expected.data(), 320, 240, 320 * 4, fontFile, 26);
        EXPECT_TRUE(snap.bytes == expected);
        EXPECT_EQ(snap.bytes == plain.bytes, c.written == 0);
    }
}

// A lens circle in the middle: the square round it is red, the rest green.
Frame lensFrame(const int (&lensRegion)[4]) {
    Frame frame(96, 64, [](int x, int y) { return x >= 28 && x < 68 && y >= 12 && y < 52 ? reddish : greenish; });
    frame.record.lensRegion = lensRegion;
    return frame;
}
constexpr int middle[4] = {5000, 5000, 16 * 10000 / 96, 16 * 10000 / 64};

int countGreen(const Picture& picture) {
    int count = 0;
    for (const Color& color : picture.pixels) count += color.g > color.r + 20;
    return count;
}

TEST_F(DisplaySnapTest, CutsEachFrameOnceToItsLensRegion) {
    setMode(dewarpingMode);
    start(200, 120);
    CallLog log;
    const Frame frame = lensFrame(middle);
    EXPECT_EQ(countGreen(shown(frame)), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 1);
    EXPECT_EQ(countGreen(shown()), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 1);
    EXPECT_EQ(countGreen(shown(frame)), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 2);

    // The planes outlive the view, its picture doesn't: the next view cuts its own.
    setMode(dewarpingMode);
    EXPECT_EQ(countGreen(shown()), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 3);
    setMode(0);
    EXPECT_GT(countGreen(shown()), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 3);

    // Nor does it outlive the window.
    setMode(dewarpingMode);
    EXPECT_EQ(countGreen(shown()), 0);
    bus.setConfig(DCFG_WINDOW_INSTANCE, window->handle());
    redraw();
    Snap nothing;
    set(nothing, false, false);
    EXPECT_TRUE(nothing.isUntouched());
    EXPECT_EQ(log.count("Render::cropTexture in."), 4);
    EXPECT_EQ(countGreen(shown(frame)), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 5);

    const int whole[4] = {5000, 5000, 5000, 5000};
    Frame square(64, 64, greenish);
    square.record.lensRegion = whole;
    EXPECT_GT(countGreen(shown(square)), 0);
    EXPECT_EQ(log.count("Render::cropTexture in."), 5);
}

TEST_F(DisplaySnapTest, DrawsAnyLensRegion) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const int regions[][4] = {
        {5000, 5000, 0, 0},       {5000, 5000, 3000, 0},        {5000, 5000, -3000, -3000},
        {0, 0, 5000, 5000},       {10000, 10000, 100, 100},     {-90000, 90000, 3000, 3000},
        {most, most, most, most}, {least, least, least, least}, {most, most, least, least},
        {5000, 5000, most, most},
    };
    start(200, 120);
    for (const int mode : {0, dewarpingMode}) {
        setMode(mode);
        for (const auto& region : regions) {
            SCOPED_TRACE(testing::Message() << region[0] << ' ' << region[1] << ' ' << region[2] << ' ' << region[3]);
            CallLog log;
            const Picture picture = shown(lensFrame(region));
            Snap snap;
            set(snap, false, true);
            EXPECT_EQ(snap.record.width, 200);
            EXPECT_EQ(log.count("Render::cropTexture in."), mode == 0 ? 0 : 1);
        }
    }
}

TEST_F(DisplaySnapTest, AsksThePlayerForAFrameThatHasBeenCut) {
    global.setStartTime4WaterMarker(someTime);
    setMode(dewarpingMode);
    start(200, 120);
    shown(lensFrame(middle));
    const struct {
        const char* name;
        int width, height;
        bool postProcess, font, written;
    } cases[] = {
        {"as it is", 120, 80, false, true, false},
        {"with a timestamp", 120, 80, true, true, true},
        {"without a font", 120, 80, true, false, false},
        {"no width", 0, 80, true, true, false},
        {"negative", -120, -80, true, true, false},
        {"larger than the buffer by a row", 120, 81, true, true, false},
        {"a product of 0 in 32 bits", 32768, 32768, true, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        global.setFontPath(c.font ? fontFile : "");
        answerFrameReads(c.width, c.height);
        frameReads = 0;
        Snap snap(120 * 80 * 4);
        set(snap, true, c.postProcess);
        EXPECT_EQ(frameReads, 1);
        EXPECT_EQ(snap.record.width, c.width);
        EXPECT_EQ(snap.record.height, c.height);

        Bytes expected(snap.bytes.size(), 77);  // rows stand as the player has left them
        for (std::size_t i = 0; i < 120 * 80 * 4; ++i) expected[i] = static_cast<std::uint8_t>(i % 251);
        if (c.written) filterData(someTime, expected.data(), 120, 80, 120 * 4, fontFile, 26);
        EXPECT_TRUE(snap.bytes == expected);
    }
    frameReads = 0;
    Snap snap(120 * 80 * 4);
    snap.record.bufferSize = -1;
    set(snap, true, true);
    snap.record.bufferSize = 120 * 80 * 4;
    snap.record.buffer = nullptr;
    set(snap, true, true);
    EXPECT_EQ(frameReads, 0) << "nowhere to put it";
    player.reset();
    snap.record.buffer = snap.bytes.data();
    set(snap, true, true);
    EXPECT_TRUE(snap.isUntouched()) << "nobody answers";
}

TEST_F(DisplaySnapTest, ReadsAFrameThatIsStillWhole) {
    answerFrameReads(1, 1);
    setMode(dewarpingMode);
    start(200, 120);
    const Frame frame = lensFrame(middle);
    Snap snap(96 * 64 * 4);
    // Just after a draw a frame waits for its turn, and a snapshot that comes at once goes first. A machine that is
    // busy elsewhere may let the draw in between: then the player has been asked, and it is tried again.
    for (int tries = 0; tries < 50; ++tries) {
        frameReads = 0;
        shown(frame);
        bus.setConfig(DCFG_YUV_FRAME, &frame.record);
        set(snap, true, true);
        if (frameReads == 0) break;
    }
    EXPECT_EQ(frameReads, 0);
    ASSERT_EQ(snap.record.width, 96);
    EXPECT_TRUE(near(snap.at(2, 2), toColor(greenish), 1)) << snap.at(2, 2);
    EXPECT_TRUE(near(snap.at(48, 32), toColor(reddish), 1)) << snap.at(48, 32);
}

}  // namespace

}  // namespace zet::ZETShow
