// Pictures out of the module: what the window shows, or the frame itself.

#include <algorithm>

#include "display/display.h"
#include "overlay/textfilter.h"
#include "render/render.h"

namespace zet::ZETShow {

namespace {

constexpr int rgbaFormat = 26;  // AV_PIX_FMT_RGBA, whose header only textfilter.cpp includes

// Upside down in place: GL gives the bottom row first.
void turnRows(std::uint8_t* picture, int width, int height) {
    const std::size_t lineSize = static_cast<std::size_t>(width) * 4;
    std::uint8_t* top = picture;
    std::uint8_t* bottom = picture + lineSize * static_cast<std::size_t>(height - 1);
    for (; top < bottom; top += lineSize, bottom -= lineSize) std::swap_ranges(top, top + lineSize, bottom);
}

}  // namespace

int Display::snapTask(const DisplayConfigUserData& delivery) {
    auto* const snap = delivery.getRecord<SnapData>();
    if (!_render || !_frame.hasPlanes() || !snap) return -1;
    if (!snap->buffer || snap->bufferSize <= 0) return -1;
    bool topRowFirst = false;
    if (snap->sourceFrame == 0) {
        matchSurface();
        if (!_render) return -1;  // an observer may have replaced the view in that draw
        const Viewport& viewport = _render->viewport();
        if (FrameReader::readScreen(viewport, snap->buffer, snap->bufferSize) != 0) return -1;
        snap->width = viewport.width;
        snap->height = viewport.height;
    } else if (shownPart() != ShownPart::frame && _frame.isCropped) {
        // The view uses only a part of the frame; the player has the whole of it, top row first.
        _config->setConfig(DCFG_FRAME_READ, snap);
        topRowFirst = true;
    } else {
        if (!_reader) _reader = std::make_unique<FrameReader>();
        if (_reader->readFrame(_frame, snap->buffer, snap->bufferSize) != 0) return -1;
        snap->width = _frame.width;
        snap->height = _frame.height;
    }
    if (snap->postProcess) finishPicture(*snap, topRowFirst);
    return 0;
}

void Display::matchSurface() {
    if (_drawCount == 0) return;
    // Reading makes the driver update the surface's size; one pixel exists at any size.
    std::uint8_t pixel[4];
    FrameReader::readScreen({0, 0, 1, 1}, pixel, sizeof pixel);
    EGLint width = 0;
    EGLint height = 0;
    const bool known = eglQuerySurface(_eglDisplay, _eglSurface, EGL_WIDTH, &width) &&
                       eglQuerySurface(_eglDisplay, _eglSurface, EGL_HEIGHT, &height);
    if (!known || (width == _surfaceWidth && height == _surfaceHeight)) return;
    drawFrame();
}

void Display::finishPicture(const SnapData& snap, bool topRowFirst) {
    // The size may be the player's answer, which is data from outside.
    if (!snap.buffer || !holdsPicture(snap.bufferSize, snap.width, snap.height)) return;
    if (!topRowFirst) turnRows(snap.buffer, snap.width, snap.height);
    const std::int64_t start = _globalConfiger->GetStartTime4WaterMarker();
    const char* const fontPath = _globalConfiger->GetFontPath();
    std::int64_t time = 0;
    if (start == 0 || !fontPath || *fontPath == '\0' || __builtin_add_overflow(start, snap.timeOffset, &time)) return;
    filterData(time, snap.buffer, snap.width, snap.height, snap.width * 4, fontPath, rgbaFormat);
}

}  // namespace zet::ZETShow
