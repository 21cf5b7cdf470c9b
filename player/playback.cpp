#include "playback.h"

#include <algorithm>
#include <cmath>

namespace zetplay {

namespace {

// A picture that is later than this is not shown, if its successor is there to be.
constexpr double mostLate = 0.1;  // seconds
// Shown all the same after so many, so that a machine that is too slow shows slow pictures and not none.
constexpr int mostDropped = 8;
// How long to sleep with nothing to do: a redraw that is asked for is a picture sent again, and no more.
constexpr int restMs = 50;
constexpr int paceMs = 17;

}  // namespace

Playback::Playback(Session& session) : _session(session), _controls(session) {
    // Without a user nobody would end a still picture.
    _session.feed.repeatStill = session.options.frames > 0;
}

void Playback::run() {
    while (goesOn()) {
        _controls.handleEvents(untilNextMs());
        if (_controls.takeStep()) step();
        playDue();
        redraw();
    }
    _session.driver.waitDrawn();
}

bool Playback::goesOn() {
    if (_session.stopped()) return false;
    if (!_ended && !resting()) _ended = !_session.feed.fetch();
    return !_ended || (_session.source->still() && !_session.options.headless);
}

bool Playback::resting() const {
    return _ended || _controls.paused();
}

int Playback::untilNextMs() const {
    if (_controls.stepAsked()) return 0;
    if (resting()) return _controls.autoRotating() ? paceMs : restMs;
    if (!_running) return 0;
    return static_cast<int>(std::clamp(std::ceil(-late() * 1000), 0.0, double{restMs}));
}

double Playback::late() const {
    const std::chrono::duration<double> now = Clock::now() - _zero;
    return now.count() - _session.feed.due();
}

void Playback::playDue() {
    if (resting()) {
        _running = false;
        return;
    }
    // After a pause the controls have changed what `goesOn` saw: the next pass fetches.
    if (!_session.feed.fetch()) return;
    if (!_running) start();
    if (late() < 0) return;
    if (late() > mostLate && _dropped < mostDropped) {
        ++_dropped;
        _session.feed.drop();
        return;
    }
    if (_dropped == mostDropped) start();
    _dropped = 0;
    _session.feed.show();
}

void Playback::start() {
    _zero =
        Clock::now() - std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(_session.feed.due()));
    _running = true;
}

void Playback::step() {
    if (_session.feed.fetch()) _session.feed.show();
}

void Playback::redraw() {
    const bool asked = _session.driver.takeRedrawRequest() || _controls.takeResend();
    if (resting() && (asked || _controls.autoRotating())) _session.feed.showAgain();
}

}  // namespace zetplay
