#pragma once

#include <SDL.h>

#include <utility>

#include "session/session.h"
#include "window/gestures.h"

namespace zetplay {

/// What the user does in the window: gestures go to the bus, keys act on the run.
class Controls {
public:
    explicit Controls(Session& session);

    /// Takes all events that are there.
    void handleEvents();

    bool paused() const { return _paused; }
    bool autoRotating() const { return _autoRotate; }
    bool takeStep() { return std::exchange(_step, false); }
    /// Whether the picture has to be set again: the view or the window has lost it.
    bool takeResend() { return std::exchange(_resend, false); }

private:
    void handle(const SDL_Event& event);
    void handleMouse(const SDL_Event& event);
    void handleFinger(const SDL_TouchFingerEvent& event);
    void handleWindow(const SDL_WindowEvent& event);
    void handleKey(const SDL_KeyboardEvent& event);
    void send(const Gesture& gesture);
    void changeView(int view);
    void rotate();
    void toggleAutoRotate();
    void toggleBackdrop();
    void save(bool sourceFrame);

    Session& _session;
    Gestures _gestures;
    bool _paused = false;
    bool _step = false;
    bool _resend = false;
    bool _autoRotate = false;
    bool _backdrop = true;  // as the half sphere starts
    std::uint32_t _rotation = 0;
};

}  // namespace zetplay
