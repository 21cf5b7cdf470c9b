#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "session/controls.h"
#include "session/session.h"

namespace zetplay {

/// Plays the input by its timestamps and lets the user drive it. A separate thread reads, decodes and sets the
/// pictures. So the window's thread, which is the caller's, never waits for a draw.
class Playback {
public:
    explicit Playback(Session& session);

    /// Returns at the end of the input, at `--frames`, or when the user ends it. Throws `Failure`.
    void run();

private:
    using Clock = std::chrono::steady_clock;

    enum class Next { picture, step, again, end };

    // The window's thread.

    void handleUser();
    void endPictures(std::thread& pictures);
    int patienceMs();
    bool done();

    // The pictures' thread.

    void playToEnd();
    void play();
    bool prepare();
    Next waitForNext();
    void playDue();
    void show();
    void showAgain();
    void startClock();
    Clock::time_point dueTime() const;

    Session& _session;
    Controls _controls;

    // Both threads', guarded by `_mutex`; `_changed` tells of changes.

    std::mutex _mutex;
    std::condition_variable _changed;
    // What the user wants.
    bool _paused = false;
    bool _step = false;
    bool _resend = false;
    // What the pictures' thread reports.
    bool _ended = false;  // the last picture is shown and stays
    bool _done = false;

    // The pictures' thread's alone.

    std::exception_ptr _failure;  // the caller reads it once that thread has ended
    bool _running = false;        // the clock runs
    Clock::time_point _zero;      // when the timeline's 0 was due
    int _dropped = 0;             // pictures in a row
};

}  // namespace zetplay
