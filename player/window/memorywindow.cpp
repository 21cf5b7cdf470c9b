#include "window/memorywindow.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <utility>

#include "media/source.h"
#include "window/wakeup.h"

namespace zetplay {

void MemoryWindow::resize(int newWidth, int newHeight) {
    _width = newWidth;
    _height = newHeight;
}

void MemoryWindow::waitForEvents(int timeoutMs) {
    constexpr int noFile = -1;
    waitForInput(noFile, timeoutMs);
}

void MemoryWindow::take() {
    EGLint width = 0;
    EGLint height = 0;
    EGLSurface surface = eglGetCurrentSurface(EGL_DRAW);
    eglQuerySurface(eglGetCurrentDisplay(), surface, EGL_WIDTH, &width);
    eglQuerySurface(eglGetCurrentDisplay(), surface, EGL_HEIGHT, &height);
    const std::lock_guard lock(_mutex);
    _coming.width = width;
    _coming.height = height;
    _coming.rgba.resize(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, _coming.rgba.data());
    _isNew = true;
}

Pixels MemoryWindow::read() {
    const std::lock_guard lock(_mutex);
    if (std::exchange(_isNew, false)) std::swap(_coming, _shown);
    if (_shown.rgba.empty()) throw Failure("nothing has been drawn that could be saved");
    const int lineSize = 4 * _shown.width;
    const std::uint8_t* const top = _shown.rgba.data() + static_cast<std::ptrdiff_t>(_shown.height - 1) * lineSize;
    return {top, -lineSize, _shown.width, _shown.height, PixelOrder::rgba};
}

}  // namespace zetplay
