#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace zetplay {

/// Follows what the module draws by its notices, so that it is known when a frame has reached the screen.
///
/// A notice that comes while a frame is being set may belong to an earlier redraw or to the frame. It is the frame's if
/// no redraw was owed, for which the requests are counted. Otherwise the frame counts as drawn with a later notice, or
/// when `dueDrawn` says that none is to come.
class DrawWatch {
public:
    using Duration = std::chrono::steady_clock::duration;

    // What the bus tells. Any thread.

    void requested();
    void drawn();

    // The thread that sets frames.

    void frameBegins();
    void frameEnds();
    /// Returns when the frame set last has been drawn; false if that can't be told yet. Waits at most so long: `most`,
    /// or a pace from the last draw on where a notice need not come.
    bool waitFrame(Duration most);
    /// After a wait in vain: the draw that was due then, if there was one, has been made.
    void dueDrawn();

    /// Returns after so many further draws, or when none has come for `quiet`. Any thread.
    void waitDraws(std::uint32_t draws, Duration quiet);
    /// Frames that have reached the screen. Any thread.
    std::int64_t framesDrawn() const;

private:
    using Clock = std::chrono::steady_clock;

    void frameDrawn();

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::uint32_t _draws = 0;
    Clock::time_point _lastDraw;
    int _owed = 0;  // redraws, at most
    std::int64_t _framesDrawn = 0;

    // Of the frame set last.
    bool _pending = false;
    bool _setting = false;
    bool _alone = false;  // no redraw was owed in its set
    std::uint32_t _drawsBefore = 0;
    std::uint32_t _drawsUntilDue = 0;
};

}  // namespace zetplay
