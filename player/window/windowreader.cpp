#include "window/windowreader.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <bit>
#include <chrono>
#include <thread>

#include "media/source.h"

namespace zetplay {

namespace {

/// One colour channel of a pixel word.
class Channel {
public:
    explicit Channel(unsigned long mask)
        : _mask(mask), _shift(mask ? std::countr_zero(mask) : 0), _most(mask ? mask >> _shift : 1) {}

    /// 0 to 255.
    std::uint32_t of(unsigned long pixel) const {
        return static_cast<std::uint32_t>((((pixel & _mask) >> _shift) * 255 + _most / 2) / _most);
    }

private:
    unsigned long _mask;
    int _shift;
    unsigned long _most;
};

/// The module draws over its own connection. The server takes a large picture in piece by piece, and may answer this
/// connection in between: give it several turns.
void letServerCatchUp(Display* display) {
    constexpr int turns = 5;
    for (int i = 0; i < turns; ++i) {
        XSync(display, False);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

/// Whether the server gives the words of `Pixels`, as nearly all do.
bool hasPlainWords(const XImage& picture, const Visual& visual) {
    const int native = std::endian::native == std::endian::little ? LSBFirst : MSBFirst;
    return picture.bits_per_pixel == 32 && picture.byte_order == native && visual.red_mask == 0xFF0000 &&
           visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
}

Pixels pixelsOf(const XImage& picture) {
    return {reinterpret_cast<const std::uint8_t*>(picture.data), picture.bytes_per_line, picture.width, picture.height};
}

/// A true-colour picture of any depth and byte order, turned into words in `words`.
Pixels converted(XImage& picture, const Visual& visual, std::vector<std::uint32_t>& words) {
    const Channel red(visual.red_mask);
    const Channel green(visual.green_mask);
    const Channel blue(visual.blue_mask);
    words.clear();
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const unsigned long pixel = XGetPixel(&picture, x, y);
            words.push_back(red.of(pixel) << 16 | green.of(pixel) << 8 | blue.of(pixel));
        }
    }
    return {reinterpret_cast<const std::uint8_t*>(words.data()), 4 * picture.width, picture.width, picture.height};
}

struct FreeXImage {
    void operator()(XImage* picture) const { XDestroyImage(picture); }
};
using XImageHandle = std::unique_ptr<XImage, FreeXImage>;

}  // namespace

/// A picture in shared memory that the server writes to. It copies the window to a pixmap first: the server can't share
/// a window that reaches beyond the screen.
class WindowReader::SharedPicture {
public:
    SharedPicture(Display* display, const XWindowAttributes& window) : _display(display), _visual(window.visual) {
        const auto width = static_cast<unsigned>(window.width);
        const auto height = static_cast<unsigned>(window.height);
        if (!XShmQueryExtension(display)) return;
        const auto depth = static_cast<unsigned>(window.depth);
        _image.reset(XShmCreateImage(display, _visual, depth, ZPixmap, nullptr, &_segment, width, height));
        if (!_image) return;
        const std::size_t bytes = static_cast<std::size_t>(_image->bytes_per_line) * height;
        _segment.shmid = ::shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
        void* const memory = ::shmat(_segment.shmid, nullptr, 0);
        if (memory != reinterpret_cast<void*>(-1)) {
            _image->data = _segment.shmaddr = static_cast<char*>(memory);
            XShmAttach(display, &_segment);
            XSync(display, False);
            _pixmap = XCreatePixmap(display, window.root, width, height, depth);
            XGCValues values{};
            values.subwindow_mode = IncludeInferiors;
            values.graphics_exposures = False;
            _copy = XCreateGC(display, _pixmap, GCSubwindowMode | GCGraphicsExposures, &values);
        }
        // Freed when the last process detaches.
        ::shmctl(_segment.shmid, IPC_RMID, nullptr);
    }
    ~SharedPicture() {
        if (!_copy) return;
        XFreeGC(_display, _copy);
        XFreePixmap(_display, _pixmap);
        XShmDetach(_display, &_segment);
        XSync(_display, False);
        ::shmdt(_segment.shmaddr);
    }
    SharedPicture(const SharedPicture&) = delete;
    SharedPicture& operator=(const SharedPicture&) = delete;

    bool fits(const XWindowAttributes& window) const {
        return _image && _image->width == window.width && _image->height == window.height && _visual == window.visual;
    }
    /// Null if the server can't share memory with this program.
    XImage* read(Window window) {
        if (!_copy) return nullptr;
        const auto width = static_cast<unsigned>(_image->width);
        const auto height = static_cast<unsigned>(_image->height);
        XCopyArea(_display, window, _pixmap, _copy, 0, 0, width, height, 0, 0);
        return XShmGetImage(_display, _pixmap, _image.get(), 0, 0, AllPlanes) ? _image.get() : nullptr;
    }

private:
    Display* _display;
    Visual* _visual;
    XShmSegmentInfo _segment{};
    XImageHandle _image;
    Pixmap _pixmap = 0;
    GC _copy = nullptr;
};

WindowReader::WindowReader(Display* display) : _display(display) {}

WindowReader::~WindowReader() = default;

Pixels WindowReader::read(unsigned long window) {
    letServerCatchUp(_display);
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(_display, window, &attributes)) throw Failure("the window is gone");
    if (attributes.map_state != IsViewable) throw Failure("a window that is not shown has no pixels");
    if (!_shared || !_shared->fits(attributes)) {
        _shared.reset();
        _shared = std::make_unique<SharedPicture>(_display, attributes);
    }
    XImage* const shared = _shared->read(window);
    if (shared && hasPlainWords(*shared, *attributes.visual)) return pixelsOf(*shared);
    const XImageHandle picture(shared ? nullptr
                                      : XGetImage(_display, window, 0, 0, static_cast<unsigned>(attributes.width),
                                                  static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap));
    if (!shared && !picture) throw Failure("the X server does not give the window's pixels");
    return converted(shared ? *shared : *picture, *attributes.visual, _words);
}

}  // namespace zetplay
