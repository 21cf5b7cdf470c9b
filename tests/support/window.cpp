#include "support/window.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>

#include "support/eglcalls.h"

namespace zet::test {

namespace {

::Display* x11(void* connection) {
    return static_cast<::Display*>(connection);
}

void* connect() {
    const std::lock_guard lock(connecting());
    ::Display* const connection = XOpenDisplay(nullptr);
    if (!connection) {
        std::fputs("no X display: run ./test, or ctest under tools/virtualscreen.sh\n", stderr);
        std::exit(1);
    }
    return connection;
}

}  // namespace

Window::Window(int width, int height, int x, int y) : _connection(connect()) {
    XSetWindowAttributes attributes = {};
    attributes.override_redirect = True;
    attributes.event_mask = ExposureMask;
    _window = XCreateWindow(x11(_connection), DefaultRootWindow(x11(_connection)), x, y, static_cast<unsigned>(width),
                            static_cast<unsigned>(height), 0, CopyFromParent, InputOutput, nullptr,
                            CWOverrideRedirect | CWEventMask, &attributes);
    XMapRaised(x11(_connection), _window);
    XEvent seen;
    XWindowEvent(x11(_connection), _window, ExposureMask, &seen);
}

Window::~Window() {
    XCloseDisplay(x11(_connection));
}

void Window::resize(int width, int height) {
    XResizeWindow(x11(_connection), _window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(x11(_connection), False);
}

void Window::unmap() {
    XUnmapWindow(x11(_connection), _window);
    XSync(x11(_connection), False);
}

void Window::destroy() {
    XDestroyWindow(x11(_connection), _window);
    XSync(x11(_connection), False);
}

Picture Window::grab() const {
    XWindowAttributes size;
    XGetWindowAttributes(x11(_connection), _window, &size);
    XImage* const image = XGetImage(x11(_connection), _window, 0, 0, static_cast<unsigned>(size.width),
                                    static_cast<unsigned>(size.height), AllPlanes, ZPixmap);
    Picture picture(size.width, size.height);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            picture.at(x, y) = {static_cast<double>(pixel >> 16 & 0xff), static_cast<double>(pixel >> 8 & 0xff),
                                static_cast<double>(pixel & 0xff)};
        }
    }
    XDestroyImage(image);
    return picture;
}

}  // namespace zet::test
