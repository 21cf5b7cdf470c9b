#pragma once

#include <cstdint>

#include "support/picture.h"

struct _XDisplay;  // X11's own header brings macros along

namespace zet::test {

/// A bare window on the X screen, above all others and visible when the constructor returns. One thread. Don't
/// construct one while a display starts: both connect through libXau, which is not thread-safe.
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
