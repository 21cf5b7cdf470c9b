#include "grab.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <bit>
#include <chrono>
#include <cstring>
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
    bool isByte() const { return _most == 255; }
    int shift() const { return _shift; }

private:
    unsigned long _mask;
    int _shift;
    unsigned long _most;
};

struct Channels {
    Channel red;
    Channel green;
    Channel blue;

    bool areBytes() const { return red.isByte() && green.isByte() && blue.isByte(); }
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

/// Words of 32 bits as this machine reads them: what nearly every server gives.
bool hasPlainWords(const XImage& picture) {
    const int native = std::endian::native == std::endian::little ? LSBFirst : MSBFirst;
    return picture.bits_per_pixel == 32 && picture.byte_order == native;
}

void readRow(XImage& picture, int y, const Channels& channels, std::uint8_t* to) {
    for (int x = 0; x < picture.width; ++x, to += 3) {
        const unsigned long pixel = XGetPixel(&picture, x, y);
        to[0] = channels.red.of(pixel);
        to[1] = channels.green.of(pixel);
        to[2] = channels.blue.of(pixel);
    }
}

/// The same without a call and divisions for each pixel, which would cost a recording more than its encoder does.
void readPlainRow(const XImage& picture, int y, const Channels& channels, std::uint8_t* to) {
    const int red = channels.red.shift();
    const int green = channels.green.shift();
    const int blue = channels.blue.shift();
    const char* from = picture.data + static_cast<std::ptrdiff_t>(y) * picture.bytes_per_line;
    for (int x = 0; x < picture.width; ++x, from += 4, to += 3) {
        std::uint32_t pixel;
        std::memcpy(&pixel, from, sizeof pixel);
        to[0] = static_cast<std::uint8_t>(pixel >> red);
        to[1] = static_cast<std::uint8_t>(pixel >> green);
        to[2] = static_cast<std::uint8_t>(pixel >> blue);
    }
}

struct FreeXImage {
    void operator()(XImage* picture) const { XDestroyImage(picture); }
};

}  // namespace

Image imageFromX(XImage& picture) {
    Image image(picture.width, picture.height);
    const Channels channels{Channel(picture.red_mask), Channel(picture.green_mask), Channel(picture.blue_mask)};
    const bool quick = hasPlainWords(picture) && channels.areBytes();
    for (int y = 0; y < picture.height; ++y) {
        if (quick) {
            readPlainRow(picture, y, channels, image.row(y));
        } else {
            readRow(picture, y, channels, image.row(y));
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
