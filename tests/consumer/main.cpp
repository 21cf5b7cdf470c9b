// A player at its smallest, built outside the project: one red frame in a plain window. Exits with 0 once it is seen.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

#include "zet/zet.h"

int main() {
    const int side = 64;
    Display* x = XOpenDisplay(nullptr);
    if (!x) return 2;
    const Window window = XCreateSimpleWindow(x, DefaultRootWindow(x), 0, 0, side, side, 0, 0, 0);
    XMapWindow(x, window);
    XSync(x, False);

    zet::DisplayConfig config;
    zet::GlobalConfiger global;
    const auto display = zet::CreateZETDisplay(&config, &global);
    config.setConfig(zet::DCFG_RENDER_MODE, 0);
    config.setConfig(zet::DCFG_WINDOW_INSTANCE, window);

    // Red in full-range BT.601: Y = 0.299 * 255, U = 128 - 0.1687 * 255, V = 128 + 0.5 * 255.
    const std::vector<std::uint8_t> y(side * side, 76), u(side * side / 4, 85), v(side * side / 4, 255);
    zet::YUV420PData frame;
    frame.y = y.data();
    frame.u = u.data();
    frame.v = v.data();
    frame.yLineSize = frame.width = frame.height = side;
    frame.uvLineSize = side / 2;
    config.setConfig(zet::DCFG_YUV_FRAME, &frame);

    for (int tries = 0; tries < 500; ++tries) {
        XImage* image = XGetImage(x, window, 0, 0, side, side, AllPlanes, ZPixmap);
        const unsigned long pixel = XGetPixel(image, side / 2, side / 2);
        XDestroyImage(image);
        // Two steps for the rounding of the planes and of the matrix.
        if ((pixel >> 16 & 0xff) >= 253 && (pixel >> 8 & 0xff) <= 2 && (pixel & 0xff) <= 2) return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 1;
}
