#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <vector>

namespace bench {

struct Size {
    int width = 0;
    int height = 0;
};

/// A plain mapped window. No X server: the program ends with one line.
class XWindow {
public:
    explicit XWindow(Size size, int x = 0, int y = 0);
    ~XWindow();
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;

    std::uintptr_t handle() const { return _window; }
    Size size() const { return _size; }

    /// Raises it above all others. Its pixels are undefined until the next draw.
    void raise();
    /// What the server holds for it: R, G and B of each pixel, top row first. No other window may cover it.
    std::vector<std::uint8_t> pixels() const;

private:
    ::Display* _display;
    ::Window _window;
    Size _size;
};

}  // namespace bench
