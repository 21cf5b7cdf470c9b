#include "session/playback.h"

#include <gtest/gtest.h>

#include "testmedia.h"
#include "window/wakeup.h"

namespace zetplay::test {
namespace {

using namespace std::chrono_literals;

void press(SDL_Keycode key) {
    SDL_Event event{};
    event.type = SDL_KEYDOWN;
    event.key.keysym.sym = key;
    SDL_PeepEvents(&event, 1, SDL_ADDEVENT, 0, 0);
    wake();
}

/// Plays four pictures, a to d, over and over, while somebody in another thread presses keys.
class Looping : public testing::Test {
protected:
    Looping() {
        const auto note = [this](zet::DisplayConfig&, zet::DisplayConfigUserData& event) {
            const std::lock_guard lock(_mutex);
            _shown += static_cast<char>(*static_cast<const zet::YUV420PData*>(event.getData())->y);
            _setter = std::this_thread::get_id();
            _changed.notify_all();
            return 0;
        };
        _observers.regist(zet::DCFG_YUV_FRAME, note, zet::DCFG_FLAG_EVENT);
    }

    void waitShown(std::size_t count) {
        std::unique_lock lock(_mutex);
        EXPECT_TRUE(_changed.wait_for(lock, 20s, [&] { return _shown.size() >= count; })) << count;
    }
    /// Waits until no more pictures come, one of which would come every 40 ms, and returns how many were shown.
    std::size_t waitQuiet() {
        std::unique_lock lock(_mutex);
        std::size_t count = _shown.size();
        for (int i = 0; i < 20 && _changed.wait_for(lock, 500ms, [&] { return _shown.size() != count; }); ++i)
            count = _shown.size();
        return count;
    }
    /// Returns when the user has quit.
    template <typename User>
    void play(User user) {
        const std::jthread hands(user);
        Playback(_session).run();
    }

    static std::string picture(char sample) { return std::string(24, sample); }
    ScratchDirectory _scratch;
    Options _options = [this] {
        Options options;
        options.input =
            _scratch.write("a.y4m", y4m(4, 4, fullRange, {picture('a'), picture('b'), picture('c'), picture('d')}));
        options.width = options.height = 100;
        options.loop = true;
        return options;
    }();
    Session _session{_options};
    std::mutex _mutex;
    std::condition_variable _changed;
    std::string _shown;
    std::thread::id _setter;
    zet::DisplayConfigKit _observers{&_session.driver.bus()};
};

char following(char picture) {
    return picture == 'd' ? 'a' : static_cast<char>(picture + 1);
}

TEST_F(Looping, pausesStepsAndGoesOn) {
    std::size_t rest = 0;
    std::size_t stepped = 0;
    play([&] {
        waitShown(6);  // more than there are
        press(SDLK_SPACE);
        rest = waitQuiet();
        for (const std::size_t step : {1u, 2u}) {
            press(SDLK_PERIOD);
            waitShown(rest + step);
        }
        press(SDLK_2);  // the new view gets the picture again
        waitShown(rest + 3);
        stepped = waitQuiet();
        press(SDLK_SPACE);
        waitShown(stepped + 3);
        press(SDLK_q);
    });
    ASSERT_GE(rest, 6u);
    ASSERT_GE(_shown.size(), rest + 3);
    EXPECT_EQ(stepped, rest + 3);
    EXPECT_EQ(_shown[rest], following(_shown[rest - 1]));
    EXPECT_EQ(_shown[rest + 1], following(_shown[rest]));
    EXPECT_EQ(_shown[rest + 2], _shown[rest + 1]);
    EXPECT_NE(_setter, std::this_thread::get_id()) << "the window's thread waits for no draw";
}

TEST_F(Looping, endsWhereLoopingDoes) {
    play([&] {
        waitShown(5);
        press(SDLK_l);
    });
    EXPECT_EQ(_session.feed.framesRead() % 4, 0);
    EXPECT_EQ(_session.driver.framesDrawn(), _session.feed.framesSet());
}

TEST_F(Looping, showsTheLastPictureHoweverLate) {
    _session.feed.loop = false;
    const auto linger = [this](zet::DisplayConfig&, zet::DisplayConfigUserData&) {
        if (_session.feed.framesShown() == 0) std::this_thread::sleep_for(500ms);
        return 0;
    };
    _observers.regist(zet::DCFG_YUV_FRAME, linger, zet::DCFG_FLAG_EVENT);
    Playback(_session).run();
    EXPECT_EQ(_shown, "ad") << "those between were due long ago";
}

Options optionsFor(const std::string& input) {
    Options options;
    options.input = input;
    return options;
}

TEST(Playback, drawsTheLastPictureBeforeItTellsOfDamage) {
    const ScratchDirectory scratch;
    const Options options = optionsFor(scratch.write("cut.y4m", quarteredVideo(64, 32, 3).substr(0, 7000)));
    Session session(options);
    zet::DisplayConfigKit observers(&session.driver.bus());
    // Redraws are owed: the draw during the set may not be the frame's.
    const auto ask = [&](zet::DisplayConfig&, zet::DisplayConfigUserData&) {
        session.driver.requestRedraw();
        return 0;
    };
    observers.regist(zet::DCFG_YUV_FRAME, ask, zet::DCFG_FLAG_EVENT);
    EXPECT_THROW(Playback(session).run(), Failure);
    EXPECT_EQ(session.driver.framesDrawn(), 2);
}

TEST(Playback, endsWithTheUsersPartThoughTheInputIsSilent) {
    const ScratchDirectory scratch;
    const Options options = optionsFor(scratch.path("pipe"));
    const Pipe pipe(options.input, quarteredVideo(64, 32, 4));
    Session session(options);
    zet::DisplayConfigKit observers(&session.driver.bus());
    const auto refuse = [](zet::DisplayConfig&, zet::DisplayConfigUserData&) -> int { throw Failure("refused"); };
    observers.regist(zet::DCFG_ROTATION, refuse, zet::DCFG_FLAG_EVENT);
    // By then the pipe is empty and a read waits.
    const std::jthread hands([] {
        std::this_thread::sleep_for(500ms);
        press(SDLK_r);
    });
    EXPECT_THROW(Playback(session).run(), Failure);
}

}  // namespace
}  // namespace zetplay::test
