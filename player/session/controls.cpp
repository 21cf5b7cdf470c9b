#include "session/controls.h"

#include <filesystem>
#include <iostream>

#include "record/pngfile.h"
#include "zet/rendermode.h"

namespace zetplay {

namespace {

constexpr const char* keyList =
    "0 to 9, -    view: flat, half-sphere, panorama, four-pane, map, drum, bowl, wall-three, wall-two, wall-one, "
    "wall-180\n"
    "space        pause\n"
    ".            one frame on\n"
    "r            rotate by 90 degrees (flat view)\n"
    "a            rotation by itself on and off\n"
    "b            backdrop of the half sphere on and off\n"
    "s, S         save what the view shows, the source frame\n"
    "l            start over at the end: on and off\n"
    "f            full screen\n"
    "h, F1        this list\n"
    "q, Esc       quit\n";

constexpr float autoRotateSpeed = 1;
constexpr std::int64_t mouse = -1;  // finger number of the mouse

double seconds(Uint32 ticks) {
    return ticks / 1000.0;
}

/// "zetplay-0001.png", the first that does not exist.
std::string freeName() {
    for (int i = 1;; ++i) {
        std::string number = std::to_string(i);
        number.insert(0, number.size() < 4 ? 4 - number.size() : 0, '0');
        std::string name = "zetplay-" + number + ".png";
        if (!std::filesystem::exists(name)) return name;
    }
}

}  // namespace

Controls::Controls(Session& session)
    : _session(session), _gestures([this](const Gesture& gesture) { send(gesture); }) {}

void Controls::handleEvents() {
    SDL_Event event;
    while (SDL_PollEvent(&event)) handle(event);
}

void Controls::handle(const SDL_Event& event) {
    switch (event.type) {
        case SDL_QUIT:
            _session.quit();
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
        case SDL_MOUSEMOTION:
            handleMouse(event);
            break;
        case SDL_MOUSEWHEEL:
            _gestures.wheel(event.wheel.preciseY);
            break;
        case SDL_FINGERDOWN:
        case SDL_FINGERUP:
        case SDL_FINGERMOTION:
            handleFinger(event.tfinger);
            break;
        case SDL_WINDOWEVENT:
            handleWindow(event.window);
            break;
        case SDL_KEYDOWN:
            handleKey(event.key);
            break;
        default:
            break;
    }
}

void Controls::handleMouse(const SDL_Event& event) {
    if (event.type == SDL_MOUSEMOTION) {
        const auto& motion = event.motion;
        _gestures.move(mouse, {static_cast<float>(motion.x), static_cast<float>(motion.y)}, seconds(motion.timestamp));
        return;
    }
    const auto& button = event.button;
    if (button.button != SDL_BUTTON_LEFT) return;
    const zet::TouchPoint at{static_cast<float>(button.x), static_cast<float>(button.y)};
    if (event.type == SDL_MOUSEBUTTONDOWN) {
        _gestures.down(mouse, at, seconds(button.timestamp));
    } else {
        _gestures.up(mouse, at, seconds(button.timestamp));
    }
}

void Controls::handleFinger(const SDL_TouchFingerEvent& event) {
    // SDL gives fractions of the window.
    const zet::TouchPoint at{event.x * static_cast<float>(_session.window->width()),
                             event.y * static_cast<float>(_session.window->height())};
    const double time = seconds(event.timestamp);
    switch (event.type) {
        case SDL_FINGERDOWN:
            _gestures.down(event.fingerId, at, time);
            break;
        case SDL_FINGERUP:
            _gestures.up(event.fingerId, at, time);
            break;
        default:
            _gestures.move(event.fingerId, at, time);
            break;
    }
}

void Controls::handleWindow(const SDL_WindowEvent& event) {
    if (event.event == SDL_WINDOWEVENT_CLOSE) _session.quit();
    // The module sees the new size at its next draw, which a recording makes anyway.
    if (_session.recording) return;
    if (event.event == SDL_WINDOWEVENT_SIZE_CHANGED || event.event == SDL_WINDOWEVENT_EXPOSED)
        _session.driver.requestRedraw();
}

void Controls::handleKey(const SDL_KeyboardEvent& event) {
    const SDL_Keycode key = event.keysym.sym;
    if (key >= SDLK_0 && key <= SDLK_9) return changeView(key - SDLK_0);
    switch (key) {
        case SDLK_MINUS:
            changeView(zet::RENDER_MODE_WALL_180);
            break;
        case SDLK_SPACE:
            _paused = !_paused;
            break;
        case SDLK_PERIOD:
            _paused = _step = true;
            break;
        case SDLK_r:
            rotate();
            break;
        case SDLK_a:
            toggleAutoRotate();
            break;
        case SDLK_b:
            toggleBackdrop();
            break;
        case SDLK_s:
            save((event.keysym.mod & KMOD_SHIFT) != 0);
            break;
        case SDLK_l:
            _session.feed.loop = !_session.feed.loop;
            break;
        case SDLK_f:
            _session.window->toggleFullScreen();
            break;
        case SDLK_h:
        case SDLK_F1:
            std::cout << keyList << std::flush;
            break;
        case SDLK_q:
        case SDLK_ESCAPE:
            _session.quit();
            break;
        default:
            break;
    }
}

void Controls::send(const Gesture& gesture) {
    const auto told = gestureForView(gesture, _session.view());
    if (!told) return;
    struct Sender {
        Driver& driver;
        void operator()(const TouchDown& touch) const { driver.touchDown(touch.at); }
        void operator()(const TouchUp& touch) const { driver.touchUp(touch.at); }
        void operator()(const DoubleTap& tap) const { driver.doubleTap(tap.at); }
        void operator()(const zet::DragPoints& drag) const { driver.drag(drag); }
        void operator()(const Pinch& pinch) const { driver.pinch(pinch.factor); }
        void operator()(const zet::Fling& fling) const {
            driver.fling(fling);
            driver.requestRedraw();  // inertia asks for no draws itself
        }
    };
    std::visit(Sender{_session.driver}, *told);
    // A touch stops the rotation in the view; the bus must not start it again in the next one.
    if (_autoRotate && std::holds_alternative<TouchDown>(gesture)) toggleAutoRotate();
}

void Controls::changeView(int view) {
    // The bus replays settings to a new view: an old fling must not be among them.
    _session.driver.fling({0, 0});
    _session.setView(view);
    _resend = true;
}

void Controls::rotate() {
    _rotation = (_rotation + 90) % 360;
    _session.driver.setRotation(_rotation);
}

void Controls::toggleAutoRotate() {
    _autoRotate = !_autoRotate;
    _session.driver.setAutoRotate({_autoRotate, autoRotateSpeed});
}

void Controls::toggleBackdrop() {
    _backdrop = !_backdrop;
    _session.driver.setSceneBackdrop(_backdrop, _backdrop);
    _session.driver.requestRedraw();
}

void Controls::save(bool sourceFrame) {
    const auto shot = _session.snap(sourceFrame);
    if (!shot) {
        std::cerr << "zetplay: there is no picture to save yet\n";
        return;
    }
    const std::string name = freeName();
    try {
        writePng(name, imageFromRgba(shot->rgba, shot->width, shot->height, shot->topRowFirst));
        std::cerr << "saved " << name << '\n';
    } catch (const Failure& failure) {
        std::cerr << "zetplay: " << failure.what() << '\n';
    }
}

}  // namespace zetplay
