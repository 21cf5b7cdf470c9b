#include "window/window.h"

#include <SDL.h>
#include <SDL_syswm.h>
#include <X11/Xlib.h>

#include <cstdlib>
#include <iostream>
#include <thread>
#include <utility>

#include "media/source.h"
#include "window/wakeup.h"

namespace zetplay {

namespace {

using namespace std::chrono_literals;

// SDL reports a change of focus 200 ms late, and only checks the time when asked for events.
constexpr auto followUp = 300ms;
constexpr int followUpStepMs = 100;

/// The call's result tells of a window that is gone or can't be read. Xlib's own handler would end the program.
int ignoreXError(Display*, XErrorEvent*) {
    return 0;
}

std::function<void()> rescue;
std::thread::id rescuer;

/// Ends the program, as Xlib would if this returned.
int endWithoutServer(Display*) {
    std::cerr << "zetplay: the X server has gone\n";
    if (rescue && std::this_thread::get_id() == rescuer) std::exchange(rescue, {})();
    std::_Exit(1);
}

}  // namespace

VideoSystem::VideoSystem() {
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        const char* display = std::getenv("DISPLAY");
        throw Failure(display && *display ? "cannot open X display " + std::string(display)
                                          : "no X display: DISPLAY is not set");
    }
    XSetErrorHandler(ignoreXError);
    XSetIOErrorHandler(endWithoutServer);
}

VideoSystem::~VideoSystem() {
    rescue = {};
    SDL_Quit();
}

void VideoSystem::onServerLost(std::function<void()> save) {
    rescue = std::move(save);
    rescuer = std::this_thread::get_id();
}

ScreenWindow::ScreenWindow(int width, int height) {
    _window = SDL_CreateWindow("zetplay", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, width, height,
                               SDL_WINDOW_HIDDEN | SDL_WINDOW_RESIZABLE);
    if (!_window) throw Failure(std::string("cannot make a window: ") + SDL_GetError());
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    SDL_GetWindowWMInfo(_window, &info);
    _display = info.info.x11.display;
    _handle = info.info.x11.window;
    _reader = std::make_unique<WindowReader>(_display);
    XSetWindowAttributes attributes{};
    attributes.backing_store = Always;
    // The module fills the whole window; a background would only flicker through on a resize.
    attributes.background_pixmap = None;
    XChangeWindowAttributes(_display, _handle, CWBackingStore | CWBackPixmap, &attributes);
    SDL_ShowWindow(_window);
    XSync(_display, False);
}

ScreenWindow::~ScreenWindow() {
    SDL_DestroyWindow(_window);
}

int ScreenWindow::width() const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(_display, _handle, &attributes);
    return attributes.width;
}

int ScreenWindow::height() const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(_display, _handle, &attributes);
    return attributes.height;
}

void ScreenWindow::setTitle(const std::string& title) {
    SDL_SetWindowTitle(_window, title.c_str());
}

void ScreenWindow::resize(int newWidth, int newHeight) {
    XResizeWindow(_display, _handle, static_cast<unsigned>(newWidth), static_cast<unsigned>(newHeight));
    for (int i = 0; i < 50 && (width() != newWidth || height() != newHeight); ++i) SDL_Delay(10);
}

void ScreenWindow::toggleFullScreen() {
    _fullScreen = !_fullScreen;
    SDL_SetWindowFullscreen(_window, _fullScreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
}

void ScreenWindow::waitForEvents(int timeoutMs) {
    const auto now = std::chrono::steady_clock::now();
    const bool follows = now - _lastEvent < followUp && (timeoutMs < 0 || timeoutMs > followUpStepMs);
    // `waitForInput` doesn't see events that have already been read from the connection.
    const bool events = SDL_HasEvents(SDL_FIRSTEVENT, SDL_LASTEVENT) || XEventsQueued(_display, QueuedAfterFlush) > 0 ||
                        waitForInput(ConnectionNumber(_display), follows ? followUpStepMs : timeoutMs);
    if (events) _lastEvent = std::chrono::steady_clock::now();
}

}  // namespace zetplay
