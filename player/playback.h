#pragma once

#include <chrono>

#include "controls.h"
#include "session.h"

namespace zetplay {

/// Plays the input by its timestamps and lets the user drive it.
class Playback {
public:
    explicit Playback(Session& session);

    /// Returns at the end of the input, at `--frames`, or when the user ends it. Throws `Failure`.
    void run();

private:
    using Clock = std::chrono::steady_clock;

    bool goesOn();
    /// No picture is due by the clock.
    bool resting() const;
    int untilNextMs() const;
    void playDue();
    void step();
    void redraw();
    void start();
    double late() const;

    Session& _session;
    Controls _controls;
    bool _running = false;  // the clock runs
    bool _ended = false;
    Clock::time_point _zero;  // when the timeline's 0 was due
    int _dropped = 0;         // pictures in a row
};

}  // namespace zetplay
