#include "controls.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "testmedia.h"

namespace zetplay {
namespace {

/// A session on a window that nobody sees; what reaches the bus is noted, what comes from the user is pushed into
/// SDL's own queue.
class ControlsOnBus : public testing::Test {
protected:
    ControlsOnBus() {
        note<std::int32_t>(zet::DCFG_RENDER_MODE, "mode", 0);
        note<std::int32_t>(zet::DCFG_ROTATION, "rotation", 0);
        note<float>(zet::DCFG_DRAG, "drag", 4);
        note<float>(zet::DCFG_TOUCH_DOWN, "down", 2);
        note<float>(zet::DCFG_TOUCH_UP, "up", 2);
        note<float>(zet::DCFG_DOUBLE_TAP, "double", 2);
        note<float>(zet::DCFG_FLING, "fling", 2);
        note<std::int32_t>(zet::DCFG_AUTO_ROTATE, "auto", 1);
        note<std::int32_t>(zet::DCFG_SCENE_BACKDROP, "scene", 2);
        _controls.handleEvents(0);
    }

    /// Notes `count` numbers of a record, or with 0 the value itself. A zero has no sign.
    template <typename Number>
    void note(std::int64_t id, const char* name, int count) {
        _observers.regist(
            id,
            [this, name, count](zet::DisplayConfig&, zet::DisplayConfigUserData& event) {
                std::ostringstream line;
                line << name;
                if (count == 0) line << ' ' << event.getInt();
                for (int i = 0; i < count; ++i)
                    line << ' ' << static_cast<const Number*>(event.getData())[i] + Number{};
                _notes.push_back(line.str());
                return 0;
            },
            zet::DCFG_FLAG_EVENT);
    }

    void mouse(Uint32 type, int x, int y, Uint32 time) {
        SDL_Event event{};
        event.type = type;
        if (type == SDL_MOUSEMOTION) {
            event.motion.timestamp = time;
            event.motion.x = x;
            event.motion.y = y;
        } else {
            event.button.timestamp = time;
            event.button.button = SDL_BUTTON_LEFT;
            event.button.x = x;
            event.button.y = y;
        }
        // Through the queue's own door: SDL puts its own time on events that are pushed.
        SDL_PeepEvents(&event, 1, SDL_ADDEVENT, 0, 0);
    }

    void fastDrag() {
        mouse(SDL_MOUSEBUTTONDOWN, 10, 20, 1000);
        mouse(SDL_MOUSEMOTION, 60, 20, 1050);
        mouse(SDL_MOUSEBUTTONUP, 60, 20, 1050);
        _controls.handleEvents(0);
    }

    void key(SDL_Keycode code) {
        SDL_Event event{};
        event.type = SDL_KEYDOWN;
        event.key.keysym.sym = code;
        SDL_PeepEvents(&event, 1, SDL_ADDEVENT, 0, 0);
        _controls.handleEvents(0);
    }

    static Options options(const std::string& input) {
        Options made;
        made.input = input;
        made.headless = true;
        made.width = 160;
        made.height = 120;
        return made;
    }

    using Lines = std::vector<std::string>;

    test::ScratchDirectory _scratch;
    Options _options = options(
        _scratch.write("a.y4m", "YUV4MPEG2 W4 H4 F25:1 C420jpeg XCOLORRANGE=FULL\nFRAME\n" + std::string(24, 'a')));
    Session _session{_options};
    Controls _controls{_session};
    Lines _notes;
    zet::DisplayConfigKit _observers{&_session.driver.bus()};
};

TEST_F(ControlsOnBus, MouseFollowsTheRulesOfTheView) {
    fastDrag();
    EXPECT_EQ(_notes, (Lines{"down 10 20", "drag 60 20 10 20", "up 60 20"}));
    key(SDLK_1);
    _notes.clear();
    fastDrag();
    EXPECT_EQ(_notes, (Lines{"down 10 20", "drag 10 20 60 20", "up 60 20", "fling 1000 0"}));
    key(SDLK_8);
    _notes.clear();
    fastDrag();
    EXPECT_EQ(_notes, (Lines{"down 10 20", "drag 10 20 60 20", "up 60 20", "fling -1000 0"}));
}

TEST_F(ControlsOnBus, KeysSetWhatTheyName) {
    const struct {
        SDL_Keycode key;
        Lines expected;
    } cases[] = {
        {SDLK_3, {"fling 0 0", "mode 3"}},
        {SDLK_MINUS, {"fling 0 0", "mode 10"}},
        {SDLK_0, {"fling 0 0", "mode 0"}},
        {SDLK_r, {"rotation 90"}},
        {SDLK_r, {"rotation 180"}},
        {SDLK_a, {"auto 1"}},
        {SDLK_a, {"auto 0"}},
        {SDLK_b, {"scene 0 0"}},
        {SDLK_b, {"scene 1 1"}},
    };
    for (const auto& press : cases) {
        _notes.clear();
        key(press.key);
        EXPECT_EQ(_notes, press.expected) << SDL_GetKeyName(press.key);
    }
}

}  // namespace
}  // namespace zetplay
