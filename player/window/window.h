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

    /// `save` runs before the program ends because the X server has gone; only if the calling thread notices it.
    void onServerLost(std::function<void()> save);
};

/// What the module draws on. One thread, but for `take`.
class Window {
public:
    Window() = default;
    virtual ~Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// The native window; 0 for a surface in memory.
    virtual std::uintptr_t handle() const = 0;
    virtual int width() const = 0;
    virtual int height() const = 0;
    virtual void setTitle(const std::string& title) = 0;
    virtual void resize(int width, int height) = 0;
    virtual void toggleFullScreen() = 0;
    /// Sleeps until an event comes or `wake` is called, or for `timeoutMs` at most; below 0 for ever.
    virtual void waitForEvents(int timeoutMs) = 0;
    /// The whole window; good until the next call. Throws `Failure`.
    virtual Pixels read() = 0;
    /// The module has drawn. On its render thread.
    virtual void take() {}

    /// What `read` gives, as a picture of its own.
    Image grab() { return imageFromPixels(read()); }
};

/// An X window. It asks the server for backing store: then hidden pixels can be read.
class ScreenWindow : public Window {
public:
    ScreenWindow(int width, int height);
    ~ScreenWindow() override;

    /// X11 window id.
    std::uintptr_t handle() const override { return _handle; }
    int width() const override;
    int height() const override;
    void setTitle(const std::string& title) override;
    /// Returns when the server has the new size, or after half a second if a window manager refuses it.
    void resize(int width, int height) override;
    void toggleFullScreen() override;
    /// Unlike SDL's own wait, a signal handler can end it. Shorter after an event, since SDL may follow it up.
    void waitForEvents(int timeoutMs) override;
    /// What the X server holds for the window.
    Pixels read() override { return _reader->read(_handle); }

private:
    SDL_Window* _window;
    _XDisplay* _display = nullptr;
    std::uintptr_t _handle = 0;
    std::unique_ptr<WindowReader> _reader;
    bool _fullScreen = false;
    std::chrono::steady_clock::time_point _lastEvent;
};

}  // namespace zetplay
