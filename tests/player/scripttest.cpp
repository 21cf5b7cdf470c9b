#include "script.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "testmedia.h"

namespace zetplay {
namespace {

using test::ScratchDirectory;

TEST(Script, WrongLinesAreNamedWithTheirCause) {
    const struct {
        const char* line;
        const char* cause;
    } cases[] = {
        {"fly", "'fly' is no command"},
        {"frame 0", "frame: '0' is not a count of frames"},
        {"frame 2 3", "frame: '3' is one word too many"},
        {"settle now", "'now' is one word too many"},
        {"wait -1", "'-1'"},
        {"window old", "'old' is not new, again or none"},
        {"resize 0 10", "'0'"},
        {"render-mode 99999999999", "'99999999999'"},
        {"drag 1 2 3", "missing"},
        {"auto-rotate 2 1", "'2' is not 0 or 1"},
        {"clear-color red", "'red' is not a colour"},
        {"lens-param 1 2 3 4 5 6 7 8 9 10 11 12", "one of 13 numbers is missing"},
        {"overlay-image 0 0 1 1", "path of a BMP file is missing"},
        {"lens none 2", "too many"},
        {"faces 1,2,3,4,0,33", "'1,2,3,4,0,33'"},
        {"faces 1,2,3,4,0,33,a23456789012345678901234567890x2", "at most 31"},
        {"rects none 1,2,3,4", "too many"},
        {"snap a.jpg", "'a.jpg'"},
        {"snap a.png backwards", "'backwards'"},
        {"snap a.png buffer=-1", "'buffer=-1'"},
        {"grab \"a b.png", "quote is not closed"},
    };
    for (const auto& wrong : cases) {
        try {
            parseScriptLine(wrong.line);
            ADD_FAILURE() << "accepted: " << wrong.line;
        } catch (const WrongUsage& usage) {
            EXPECT_NE(std::string(usage.what()).find(wrong.cause), std::string::npos)
                << wrong.line << " gave: " << usage.what();
        }
    }
}

TEST(Script, WholeFileIsCheckedFirst) {
    const ScratchDirectory scratch;
    const std::string path = scratch.write("a.txt", "# a comment\nframe 2 # and one more\n\n  \t\r\nfrme\nframe x\n");
    try {
        Script script(path);
        ADD_FAILURE();
    } catch (const WrongUsage& usage) {
        EXPECT_EQ(usage.what(), path + ":5: 'frme' is no command");
    }
    EXPECT_THROW(Script(scratch.path("missing.txt")), Failure);
    EXPECT_THROW(Script(scratch.path("")), Failure);
}

/// A session on a window that nobody sees, with a video of three small pictures.
class ScriptOnBus : public testing::Test {
protected:
    static Options options(const std::string& input) {
        Options made;
        made.input = input;
        made.headless = true;
        made.width = 64;
        made.height = 48;
        made.lensGiven = true;
        made.lens = {1, 2, 3, 4};
        return made;
    }

    void run(const std::string& line) { (*parseScriptLine(line))(_session); }

    ScratchDirectory _scratch;
    Options _options = options(_scratch.write("a.y4m", "YUV4MPEG2 W4 H4 F25:1 C420jpeg XCOLORRANGE=FULL\nFRAME\n" +
                                                           std::string(24, 'a') + "FRAME\n" + std::string(24, 'b') +
                                                           "FRAME\n" + std::string(24, 'c')));
    Session _session{_options};
};

enum class Form { integer, real, floats, ints, doubles };

/// What the bus holds at a delivery, as numbers.
std::vector<double> numbers(const zet::DisplayConfigUserData& event, Form form, std::size_t count) {
    std::vector<double> values;
    const auto read = [&]<typename Number>(Number) {
        for (std::size_t i = 0; i < count; ++i) {
            Number number;
            std::memcpy(&number, static_cast<const char*>(event.getData()) + i * sizeof number, sizeof number);
            values.push_back(number);
        }
    };
    switch (form) {
        case Form::integer:
            values.push_back(event.getInt());
            break;
        case Form::real:
            values.push_back(event.getFloat());
            break;
        case Form::floats:
            read(float{});
            break;
        case Form::ints:
            read(std::int32_t{});
            break;
        case Form::doubles:
            read(double{});
            break;
    }
    return values;
}

TEST_F(ScriptOnBus, CommandsSetTheirRecordsAsTheyStand) {
    const struct {
        const char* line;
        std::int64_t id;
        Form form;
        std::vector<double> expected;
    } cases[] = {
        {"render-mode -7", zet::DCFG_RENDER_MODE, Form::integer, {-7}},
        {"touch-down 1.5 -2", zet::DCFG_TOUCH_DOWN, Form::floats, {1.5, -2}},
        {"render-mode 0", zet::DCFG_RENDER_MODE, Form::integer, {0}},
        {"drag 1 2 3 4", zet::DCFG_DRAG, Form::floats, {1, 2, 3, 4}},
        {"pinch 1.25", zet::DCFG_PINCH, Form::real, {1.25}},
        {"fling 100 -50", zet::DCFG_FLING, Form::floats, {100, -50}},
        {"scene-backdrop 1 0", zet::DCFG_SCENE_BACKDROP, Form::ints, {1, 0}},
        {"rotation 450", zet::DCFG_ROTATION, Form::integer, {450}},
        {"scale 1.5", zet::DCFG_SCALE, Form::real, {1.5}},
        {"max-scale 10", zet::DCFG_MAX_SCALE, Form::real, {10}},
        {"clear-color 0x102030", zet::DCFG_CLEAR_COLOR, Form::integer, {0x102030}},
        {"face-option 9", zet::DCFG_FACE_OPTION, Form::integer, {9}},
        {"lens-param 0 2 3 4 5 6 7 8 9 0 0 0 1e-3",
         zet::DCFG_LENS_PARAM,
         Form::doubles,
         {0, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0, 1e-3}},
        {"overlay-image 0 .25 .5 1 \"no such.bmp\"", zet::DCFG_OVERLAY_IMAGE, Form::floats, {0, .25, .5, 1}},
        {"window none", zet::DCFG_WINDOW_INSTANCE, Form::integer, {0}},
    };
    for (const auto& command : cases) {
        std::vector<std::vector<double>> seen;
        void* handle = _session.driver.bus().registObserver(
            command.id,
            [&](zet::DisplayConfig&, zet::DisplayConfigUserData& event) {
                seen.push_back(numbers(event, command.form, command.expected.size()));
                return 0;
            },
            nullptr, zet::DCFG_FLAG_EVENT);
        run(command.line);
        _session.driver.bus().unRegistObserver(handle);
        ASSERT_EQ(seen.size(), 1u) << command.line;
        EXPECT_EQ(seen[0], command.expected) << command.line;
    }
}

TEST_F(ScriptOnBus, FramesCarryWhatWasSetBefore) {
    struct Frame {
        char luma;
        std::vector<int> lens;
        int kind;
        std::vector<int> items;  // x and the last field
        std::string name;
    };
    std::vector<Frame> frames;
    zet::DisplayConfigKit observers(&_session.driver.bus());
    observers.regist(
        zet::DCFG_YUV_FRAME,
        [&](zet::DisplayConfig&, zet::DisplayConfigUserData& event) {
            const auto* data = static_cast<const zet::YUV420PData*>(event.getData());
            Frame frame{static_cast<char>(data->y[0]), {}, 0, {}, {}};
            if (data->lensRegion) frame.lens.assign(data->lensRegion, data->lensRegion + 4);
            if (data->aiCount > 0) frame.kind = *data->aiKind;
            for (int i = 0; i < data->aiCount; ++i) {
                if (frame.kind == zet::AI_KIND_FACES) {
                    const auto& face = static_cast<const zet::FaceItem*>(data->aiItems)[i];
                    frame.items.insert(frame.items.end(), {face.x, static_cast<int>(face.age)});
                    frame.name = face.name;
                } else {
                    const auto& rect = static_cast<const zet::RectItem*>(data->aiItems)[i];
                    frame.items.insert(frame.items.end(), {rect.x, rect.height});
                }
            }
            frames.push_back(frame);
            return 0;
        },
        zet::DCFG_FLAG_EVENT);
    run("frame");
    run("faces 1,2,3,4,0,33,x \"5,6,7,8,1,44,Ann, the 2nd\"");
    run("lens none");
    run("frame");
    run("rects 9,10,11,12");
    run("lens 5000 5000 4900 4900");
    run("frame");
    EXPECT_THROW(run("frame"), Failure) << "the input has three frames";

    ASSERT_EQ(frames.size(), 3u);
    EXPECT_EQ(frames[0].luma, 'a');
    EXPECT_EQ(frames[0].lens, (std::vector{1, 2, 3, 4}));
    EXPECT_EQ(frames[0].kind, 0);
    EXPECT_EQ(frames[1].luma, 'b');
    EXPECT_TRUE(frames[1].lens.empty());
    EXPECT_EQ(frames[1].kind, zet::AI_KIND_FACES);
    EXPECT_EQ(frames[1].items, (std::vector{1, 33, 5, 44}));
    EXPECT_EQ(frames[1].name, "Ann, the 2nd");
    EXPECT_EQ(frames[2].luma, 'c');
    EXPECT_EQ(frames[2].lens, (std::vector{5000, 5000, 4900, 4900}));
    EXPECT_EQ(frames[2].kind, zet::AI_KIND_RECTS);
    EXPECT_EQ(frames[2].items, (std::vector{9, 12}));
}

}  // namespace
}  // namespace zetplay
