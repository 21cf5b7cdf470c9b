// Programs that don't build: the log says why, and all else goes on.

#include <algorithm>

#include "support/calllog.h"
#include "support/displaytest.h"

namespace zet::test {
namespace {

struct ProgramGl : DisplayTest {
    ProgramGl() {
        start(96, 64);  // with bars: each draw clears the window first
        inOrder = shown(frame).at(48, 32);
    }
    /// A line of the module's with words of the compiler's behind it.
    static bool saysWhy(const CallLog& log) {
        const std::string told = "compileShader fragment: ";
        const auto lines = log.lines();
        return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.starts_with(told) && line.size() > told.size() + 5;
        });
    }

    const Frame frame{64, 64, Yuv{110, 110, 190}};
    Color inOrder;
};

TEST_F(ProgramGl, aViewWhoseProgramsFailShowsNothingAndTheNextOneWorks) {
    for (const RenderModeInfo& view : renderModes) {
        SCOPED_TRACE(view.name);
        const CallLog log;
        failEgl(EglCall::shaderSource);
        bus.setConfig(DCFG_RENDER_MODE, view.mode);
        EXPECT_TRUE(saysWhy(log));
        const DragPoints drag{10, 10, 30, 40};
        bus.setConfig(DCFG_DRAG, &drag);
        shown(frame);
        resetEgl();
        bus.setConfig(DCFG_RENDER_MODE, RENDER_MODE_FLAT);
        EXPECT_TRUE(near(shown().at(48, 32), inOrder, 0));
    }
}

TEST_F(ProgramGl, aProgramThatIsNotBuiltAnewKeepsItsColors) {
    const CallLog log;
    const auto setColor = [this](std::int32_t matrix) {
        const FrameColor color{matrix, 0};
        bus.setConfig(DCFG_FRAME_COLOR, &color);
        return shown().at(48, 32);
    };
    failEgl(EglCall::shaderSource);
    EXPECT_TRUE(near(setColor(COLOR_MATRIX_BT709), inOrder, 0));
    EXPECT_TRUE(saysWhy(log));
    resetEgl();
    EXPECT_FALSE(near(setColor(COLOR_MATRIX_BT2020), inOrder, 8)) << "the next colours come";
}

}  // namespace
}  // namespace zet::test
