#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace zetplay {

/// Knows when a frame has reached the screen, by the notices that the module gives of its draws.
///
/// A notice does not say what was drawn. One that comes after a frame's set means the frame. One that comes during the
/// set may mean an older redraw. It means the frame if no redraw is owed at that time. Therefore the watch counts what
/// is owed: each request is worth a number of draws. Where a notice in the set leaves a doubt, the next notice or
/// `dueDrawn` ends it.
class DrawWatch {
public:
    using Duration = std::chrono::steady_clock::duration;

    /// Least time from one draw of the module to the next.
    static constexpr std::chrono::milliseconds pace{17};

    // What the bus tells. Any thread.

    // The module counts a request between these two calls. From the first on a redraw is owed; at the second all its
    // draws are still owed.
    void requestBegins();
    void requestEnds();
    void drawn();

    // The thread that sets frames.

    void frameBegins();
    void frameEnds();
    /// Waits for the draw of the frame set last. True if it has been drawn. False if there was no notice for `most`, or
    /// a doubtful one and then none at the time of the next draw.
    bool waitFrame(Duration most);
    /// Call it when `waitFrame` has returned false and the module has then made the draw that was due, if any.
    void dueDrawn();

    /// Returns when all draws that were owed at the call have been made. Any thread.
    void waitOwed();
    /// Frames that have reached the screen. Any thread.
    std::int64_t framesDrawn() const;

private:
    using Clock = std::chrono::steady_clock;

    void frameDrawn();

    mutable std::mutex _mutex;
    std::condition_variable _changed;
    std::uint32_t _draws = 0;
    Clock::time_point _lastDraw;
    int _owed = 0;        // redraws, at most
    int _requesting = 0;  // requests that have begun and not ended
    std::uint32_t _requests = 0;
    std::int64_t _framesDrawn = 0;

    // The frame set last.
    bool _pending = false;
    bool _setting = false;
    bool _alone = false;  // no redraw was owed in its set
    std::uint32_t _drawsBefore = 0;

    // Counts at the end of the wait for it.
    std::uint32_t _drawsUntilDue = 0;
    std::uint32_t _requestsUntilDue = 0;
};

}  // namespace zetplay
