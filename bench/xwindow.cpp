#include "xwindow.h"

#include <cstdio>
#include <cstdlib>

namespace bench {

XWindow::XWindow(int width, int height) : _display(XOpenDisplay(nullptr)) {
    if (!_display) {
        std::fputs("no X display\n", stderr);
        std::exit(1);
    }
    _window = XCreateSimpleWindow(_display, DefaultRootWindow(_display), 0, 0, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), 0, 0, 0);
    XMapWindow(_display, _window);
    XSync(_display, False);
}

XWindow::~XWindow() {
    XDestroyWindow(_display, _window);
    XCloseDisplay(_display);
}

}  // namespace bench
