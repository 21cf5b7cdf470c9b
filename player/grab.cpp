#include "grab.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <bit>
#include <chrono>
#include <memory>
#include <thread>

#include "source.h"

namespace zetplay {

namespace {

/// One colour channel of a pixel word.
class Channel {
public:
    explicit Channel(unsigned long mask)
        : _mask(mask), _shift(mask ? std::countr_zero(mask) : 0), _most(mask ? mask >> _shift : 1) {}

    std::uint8_t of(unsigned long pixel) const {
        return static_cast<std::uint8_t>((((pixel & _mask) >> _shift) * 255 + _most / 2) / _most);
    }

private:
    unsigned long _mask;
    int _shift;
    unsigned long _most;
};

/// The module draws over a connection of its own. What it has sent lies in the server's hands, but the server may
/// answer this connection first, while it takes a large picture in piece by piece: give it several turns.
void letServerCatchUp(Display* display) {
    constexpr int turns = 5;
    for (int i = 0; i < turns; ++i) {
        XSync(display, False);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

struct FreeXImage {
    void operator()(XImage* picture) const { XDestroyImage(picture); }
};

}  // namespace

Image imageFromX(XImage& picture) {
    Image image(picture.width, picture.height);
    const Channel red(picture.red_mask);
    const Channel green(picture.green_mask);
    const Channel blue(picture.blue_mask);
    for (int y = 0; y < picture.height; ++y) {
        std::uint8_t* to = image.row(y);
        for (int x = 0; x < picture.width; ++x, to += 3) {
            const unsigned long pixel = XGetPixel(&picture, x, y);
            to[0] = red.of(pixel);
            to[1] = green.of(pixel);
            to[2] = blue.of(pixel);
        }
    }
    return image;
}

Image grabWindow(Display* display, unsigned long window) {
    letServerCatchUp(display);
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display, window, &attributes)) throw Failure("the window is gone");
    const auto width = static_cast<unsigned>(attributes.width);
    const auto height = static_cast<unsigned>(attributes.height);
    const std::unique_ptr<XImage, FreeXImage> picture(
        XGetImage(display, window, 0, 0, width, height, AllPlanes, ZPixmap));
    if (!picture) throw Failure("the X server does not give the window's pixels");
    // Servers leave the masks of a window's picture to the visual.
    if (!picture->red_mask) {
        picture->red_mask = attributes.visual->red_mask;
        picture->green_mask = attributes.visual->green_mask;
        picture->blue_mask = attributes.visual->blue_mask;
    }
    return imageFromX(*picture);
}

}  // namespace zetplay
