#include "support/window.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>

namespace zet::test {

namespace {

::Display* connect() {
    ::Display* const connection = XOpenDisplay(nullptr);
    if (connection) return connection;
    std::fputs("no X display: run ./test, or ctest under tools/virtualscreen.sh\n", stderr);
    std::exit(1);
}

}  // namespace

Window::Window(int width, int height, int x, int y) : _connection(connect()) {
    XSetWindowAttributes attributes = {};
    attributes.override_redirect = True;
    attributes.event_mask = ExposureMask;
    _window = XCreateWindow(_connection, DefaultRootWindow(_connection), x, y, static_cast<unsigned>(width),
                            static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                            CWOverrideRedirect | CWEventMask, &attributes);
    XMapRaised(_connection, _window);
    XEvent seen;
    XWindowEvent(_connection, _window, ExposureMask, &seen);
}

Window::~Window() {
    XCloseDisplay(_connection);
}

void Window::resize(int width, int height) {
    XResizeWindow(_connection, _window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(_connection, False);
}

void Window::unmap() {
    XUnmapWindow(_connection, _window);
    XSync(_connection, False);
}

void Window::destroy() {
    XDestroyWindow(_connection, _window);
    XSync(_connection, False);
}

Picture Window::grab() const {
    XWindowAttributes size;
    XGetWindowAttributes(_connection, _window, &size);
    XImage* const image = XGetImage(_connection, _window, 0, 0, static_cast<unsigned>(size.width),
                                    static_cast<unsigned>(size.height), AllPlanes, ZPixmap);
    Picture picture(size.width, size.height);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            const auto channel = [pixel](int shift) { return static_cast<double>(pixel >> shift & 0xff); };
            picture.at(x, y) = {channel(16), channel(8), channel(0)};
        }
    }
    XDestroyImage(image);
    return picture;
}

}  // namespace zet::test
