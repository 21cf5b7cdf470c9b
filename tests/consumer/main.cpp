// A player at its smallest, built outside the project: one coloured frame in a plain window. Exits with 0 once it is
// seen.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
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

    // A red. With U and V from their middle, 128: R = Y + V / 0.877 = 221, B = Y + U / 0.492 < 0, and G = 19 is what is
    // left of Y = 0.299 R + 0.587 G + 0.114 B.
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
        const long red = pixel >> 16 & 0xff, green = pixel >> 8 & 0xff, blue = pixel & 0xff;
        // One step either way for the rounding to bytes.
        if (std::abs(red - 221) <= 1 && std::abs(green - 19) <= 1 && blue <= 1) return 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 1;
}
