// A player at its smallest: a window, a bus, a made-up fisheye picture, and the mouse to look around in it.
// embed [--frames N] ends when its window is closed, or after N frames; then with 1 if the window is still black.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <zet/zet.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <thread>
#include <vector>

// What a decoder would deliver: planar 4:2:0, full range. A circle of colours and squares, turning with `time`.
struct Picture {
    static constexpr int side = 480;
    std::vector<std::uint8_t> y = std::vector<std::uint8_t>(side * side), u = y, v = y;

    void paint(double time) {
        for (int i = 0; i < side * side; ++i) {
            const double across = 2.0 * (i % side) / side - 1, down = 2.0 * (i / side) / side - 1;
            const double radius = std::hypot(across, down), angle = std::atan2(down, across) + time;
            const bool light = (std::lround(radius * 8) + std::lround(angle * 24 / 6.2832)) % 2 == 0;
            y[i] = radius > 1 ? 0 : light ? 190 : 90;
            if (i % 2 || i / side % 2) continue;  // chroma has half the size both ways
            const int chroma = i / side / 2 * (side / 2) + i % side / 2;
            u[chroma] = static_cast<std::uint8_t>(radius > 1 ? 128 : 128 + 70 * std::cos(angle));
            v[chroma] = static_cast<std::uint8_t>(radius > 1 ? 128 : 128 + 70 * std::sin(angle));
        }
    }
};

int main(int count, char** words) {
    const long frames = count == 3 && std::string_view(words[1]) == "--frames" ? std::atol(words[2]) : 0;
    constexpr int width = 960, height = 600;
    Display* x = XOpenDisplay(nullptr);
    if (!x) return 2;
    const Window window = XCreateSimpleWindow(x, DefaultRootWindow(x), 0, 0, width, height, 0, 0, 0);
    Atom closing = XInternAtom(x, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(x, window, &closing, 1);
    XSelectInput(x, window, ButtonPressMask | ButtonReleaseMask | Button1MotionMask);
    XMapWindow(x, window);
    XSync(x, False);  // the module has a connection of its own: the server must know the window before it

    zet::GlobalConfiger global;
    zet::DisplayConfig bus;
    const auto display = zet::CreateZETDisplay(&bus, &global);
    bus.setConfig(zet::DCFG_RENDER_MODE, zet::RENDER_MODE_HALF_SPHERE);
    bus.setConfig(zet::DCFG_WINDOW_INSTANCE, window);

    Picture picture;
    zet::TouchPoint finger;
    for (long shown = 0; frames == 0 || shown < frames; ++shown) {
        while (XPending(x)) {
            XEvent event;
            XNextEvent(x, &event);
            if (event.type == ClientMessage) return 0;  // the display goes before bus and window, as it was made last
            const zet::TouchPoint last = finger;
            finger = {static_cast<float>(event.xbutton.x), static_cast<float>(event.xbutton.y)};
            zet::DragPoints drag{last.x, last.y, finger.x, finger.y};
            if (event.type == ButtonPress) bus.setConfig(zet::DCFG_TOUCH_DOWN, &finger);
            if (event.type == MotionNotify) bus.setConfig(zet::DCFG_DRAG, &drag);
            if (event.type == ButtonRelease) bus.setConfig(zet::DCFG_TOUCH_UP, &finger);
        }
        picture.paint(shown * 0.01);
        zet::YUV420PData frame;
        frame.y = picture.y.data(), frame.u = picture.u.data(), frame.v = picture.v.data();
        frame.yLineSize = frame.width = frame.height = Picture::side;
        frame.uvLineSize = Picture::side / 2;  // and no lensRegion: the picture is the lens circle and nothing else
        bus.setConfig(zet::DCFG_YUV_FRAME, &frame);  // back when the planes have been read
        std::this_thread::sleep_for(std::chrono::milliseconds(33));
    }

    XImage* middle = XGetImage(x, window, width / 2, height / 2, 1, 1, AllPlanes, ZPixmap);
    return middle && (XGetPixel(middle, 0, 0) & 0xffffff) != 0 ? 0 : 1;
}
