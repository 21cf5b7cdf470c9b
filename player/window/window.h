#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "media/image.h"
#include "window/windowreader.h"

struct SDL_Window;
struct _XDisplay;

namespace zetplay {

/// SDL's video part, on its X11 driver. One at a time; it outlives every `Window`.
class VideoSystem {
public:
    /// Throws `Failure` if there is no X display.
    VideoSystem();
    ~VideoSystem();
    VideoSystem(const VideoSystem&) = delete;
    VideoSystem& operator=(const VideoSystem&) = delete;

    /// What to save before the program ends because the X server has gone. For the thread that calls this.
    void onServerLost(std::function<void()> save);
};

/// An X window. A headless one is mapped, since only a mapped window has pixels, but outside every screen and
/// unmanaged; both kinds ask the server for backing store, so that their pixels can be read while nothing shows them.
class Window {
public:
    Window(int width, int height, bool headless);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// X11 window id.
    std::uintptr_t handle() const { return _handle; }
    int width() const;
    int height() const;
    void setTitle(const std::string& title);
    /// Returns when the server has the new size, or after half a second if a window manager refuses it.
    void resize(int width, int height);
    void toggleFullScreen();
    /// Sleeps until an event has come or `wake` is called, or for `timeoutMs` at most; below 0 for ever. Unlike SDL's
    /// own wait it can be ended from a signal handler. Shorter after an event, which SDL may have to follow up.
    void waitForEvents(int timeoutMs);
    /// What the X server holds for the window; good until the next call. Throws `Failure`.
    Pixels read() { return _reader->read(_handle); }
    /// The same as a picture of its own.
    Image grab() { return imageFromPixels(read()); }

private:
    void placeOffScreen(int width);

    SDL_Window* _window;
    _XDisplay* _display = nullptr;
    std::uintptr_t _handle = 0;
    std::unique_ptr<WindowReader> _reader;
    bool _fullScreen = false;
    std::chrono::steady_clock::time_point _lastEvent;
};

}  // namespace zetplay
