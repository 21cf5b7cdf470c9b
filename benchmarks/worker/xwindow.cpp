#include "worker/xwindow.h"

#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>

namespace bench {

XWindow::XWindow(Size size, int x, int y) : _display(XOpenDisplay(nullptr)), _size(size) {
    if (!_display) {
        std::fputs("no X display\n", stderr);
        std::exit(1);
    }
    _window = XCreateSimpleWindow(_display, DefaultRootWindow(_display), x, y, static_cast<unsigned>(size.width),
                                  static_cast<unsigned>(size.height), 0, 0, 0);
    XMapWindow(_display, _window);
    XSync(_display, False);
}

XWindow::~XWindow() {
    XDestroyWindow(_display, _window);
    XCloseDisplay(_display);
}

void XWindow::raise() {
    XRaiseWindow(_display, _window);
    XSync(_display, False);
}

std::vector<std::uint8_t> XWindow::pixels() const {
    XImage* const image = XGetImage(_display, _window, 0, 0, static_cast<unsigned>(_size.width),
                                    static_cast<unsigned>(_size.height), AllPlanes, ZPixmap);
    std::vector<std::uint8_t> rgb;
    if (!image) return rgb;
    rgb.reserve(static_cast<std::size_t>(_size.width * _size.height * 3));
    for (int y = 0; y < _size.height; ++y) {
        for (int x = 0; x < _size.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<std::uint8_t>(pixel >> shift & 0xff));
        }
    }
    XDestroyImage(image);
    return rgb;
}

}  // namespace bench
