#pragma once

#include <cstdint>
#include <string>

#include "image.h"

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
    /// What the X server holds for the window, upright. Throws `Failure`.
    Image grab() const;

private:
    void placeOffScreen(int width);

    SDL_Window* _window;
    _XDisplay* _display = nullptr;
    std::uintptr_t _handle = 0;
    bool _fullScreen = false;
};

}  // namespace zetplay
