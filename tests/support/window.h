#pragma once

#include <cstdint>

#include "support/picture.h"

struct _XDisplay;  // X11's own header brings macros along

namespace zet::test {

/// A bare window on the X screen, above all others and seen when the constructor returns. One thread, and the
/// constructor not while a display starts: libXau, which both sides connect with, is not for two threads at a time.
class Window {
public:
    Window(int width, int height, int x = 0, int y = 0);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    std::uintptr_t handle() const { return _window; }
    void resize(int width, int height);
    void unmap();
    void destroy();
    /// What the screen shows in the window.
    Picture grab() const;

private:
    _XDisplay* const _connection;
    std::uintptr_t _window = 0;
};

}  // namespace zet::test
