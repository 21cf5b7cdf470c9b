#pragma once

#include <X11/Xlib.h>

#include <cstdint>

namespace bench {

/// A plain mapped window. No X server: the program ends with one line.
class XWindow {
public:
    XWindow(int width, int height);
    ~XWindow();
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    std::uintptr_t handle() const { return _window; }

private:
    ::Display* _display;
    ::Window _window;
};

}  // namespace bench
