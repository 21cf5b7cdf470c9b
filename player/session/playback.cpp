#include "session/playback.h"

#include <utility>

#include "window/interrupt.h"
#include "window/wakeup.h"

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// A picture that is later than this is dropped, unless it is the last.
constexpr auto mostLate = 100ms;
// After so many dropped in a row one is shown: a machine that is too slow still shows some.
constexpr int mostDropped = 8;
// Views turn by themselves with each draw, but ask for none. A request is worth 30 draws, half a second.
constexpr int rotationMs = 400;
// For the picture in progress when the user quits.
constexpr auto patience = 50ms;

}  // namespace

Playback::Playback(Session& session) : _session(session), _controls(session) {
    // Without `--frames` a repeated still picture would never end.
    _session.feed.repeatStill = session.options.frames > 0;
}

void Playback::run() {
    {
        std::thread pictures([this] { playToEnd(); });
        // A destructor, since `handleUser` may throw.
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
        if (!_done) _session.quit();  // a read that waits for data asks for this
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
        // A read that was given up on closing may fail: ignore that.
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

/// Reads the next picture, unless the video is paused or over. False at the end of the input, but not for a still
/// picture, which somebody may be looking at.
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
    // After a pause no picture is waiting yet: the next pass fetches one.
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
