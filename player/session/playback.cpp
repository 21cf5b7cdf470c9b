#include "session/playback.h"

#include <utility>

#include "window/interrupt.h"
#include "window/wakeup.h"

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// A picture that is later than this is not shown, unless it is the last.
constexpr auto mostLate = 100ms;
// Shown all the same after so many, so that a machine that is too slow shows slow pictures and not none.
constexpr int mostDropped = 8;
// Views that turn by themselves do so with each draw and ask for none. A request is worth 30 draws, half a second.
constexpr int rotationMs = 400;
// For the picture in work when the user quits.
constexpr auto patience = 50ms;

}  // namespace

Playback::Playback(Session& session) : _session(session), _controls(session) {
    // Without a user nobody would end a still picture.
    _session.feed.repeatStill = session.options.frames > 0;
}

void Playback::run() {
    {
        std::thread pictures([this] { playToEnd(); });
        // Also when the user's part throws.
        struct End {
            Playback& playback;
            std::thread& pictures;
            ~End() { playback.endPictures(pictures); }
        };
        const End end{*this, pictures};
        for (handleUser(); !done() && !_session.closing(); handleUser()) _session.window->waitForEvents(patienceMs());
    }
    _session.driver.waitDrawn();
    if (_failure) std::rethrow_exception(_failure);
}

void Playback::endPictures(std::thread& pictures) {
    {
        std::unique_lock lock(_mutex);
        if (!_done) _session.quit();  // what a read asks that waits for data
        _changed.notify_all();
        for (bool first = true; !_done; first = false) {
            if (!first) interruptCall(pictures);
            _changed.wait_for(lock, patience, [this] { return _done; });
        }
    }
    pictures.join();
}

void Playback::handleUser() {
    _controls.handleEvents();
    bool rotates = false;
    {
        const std::lock_guard lock(_mutex);
        _paused = _controls.paused();
        _step = _controls.takeStep() || _step;
        _resend = _controls.takeResend() || _resend;
        rotates = _controls.autoRotating() && (_paused || _ended);
    }
    _changed.notify_all();
    if (rotates) _session.driver.requestRedraw();
}

int Playback::patienceMs() {
    const std::lock_guard lock(_mutex);
    return _controls.autoRotating() && (_paused || _ended) ? rotationMs : -1;
}

bool Playback::done() {
    const std::lock_guard lock(_mutex);
    return _done;
}

void Playback::playToEnd() {
    try {
        play();
    } catch (...) {
        // Nobody asks any more how a read has ended that was given up.
        if (!_session.closing()) _failure = std::current_exception();
    }
    const std::lock_guard lock(_mutex);
    _done = true;
    _changed.notify_all();
    wake();
}

void Playback::play() {
    while (!_session.stopped() && prepare()) {
        switch (waitForNext()) {
            case Next::picture:
                playDue();
                break;
            case Next::step:
                if (_session.feed.fetch()) show();
                break;
            case Next::again:
                showAgain();
                break;
            case Next::end:
                return;
        }
    }
}

/// Reads the next picture, unless the video is paused or over. False if there is nothing more to do: the input has
/// ended, and was no still picture that somebody may be looking at.
bool Playback::prepare() {
    {
        const std::lock_guard lock(_mutex);
        if (_paused || _ended) return true;
    }
    if (_session.feed.fetch()) return true;
    const std::lock_guard lock(_mutex);
    _ended = true;
    return _session.source->still() && !_session.options.headless;
}

Playback::Next Playback::waitForNext() {
    std::unique_lock lock(_mutex);
    for (;;) {
        if (_session.closing()) return Next::end;
        if (std::exchange(_step, false)) return Next::step;
        if (std::exchange(_resend, false)) return Next::again;
        if (_paused || _ended) {
            _running = false;
            _changed.wait(lock);
        } else if (!_session.feed.waiting()) {
            return Next::picture;
        } else {
            if (!_running) startClock();
            if (Clock::now() >= dueTime()) return Next::picture;
            _changed.wait_until(lock, dueTime());
        }
    }
}

void Playback::playDue() {
    // After a pause none waits yet: the next pass fetches.
    if (!_session.feed.waiting()) return;
    if (Clock::now() - dueTime() > mostLate && _dropped < mostDropped && _session.feed.skip()) {
        ++_dropped;
        return;
    }
    if (_dropped == mostDropped) startClock();
    _dropped = 0;
    show();
}

// The module drops a frame that comes before the last one has been drawn.

void Playback::show() {
    _session.driver.waitDrawn();
    _session.feed.show();
}

void Playback::showAgain() {
    _session.driver.waitDrawn();
    _session.feed.showAgain();
}

void Playback::startClock() {
    _running = true;
    _zero = Clock::now();
    _zero -= dueTime() - _zero;
}

Playback::Clock::time_point Playback::dueTime() const {
    return _zero + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(_session.feed.due()));
}

}  // namespace zetplay
