#include "display/platform.h"

#include <EGL/eglext.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>

#include "display/xconnection.h"

namespace zet::ZETShow {

namespace {

bool knows(const char* extension) {
    const char* const all = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    const std::size_t length = std::strlen(extension);
    for (const char* at = all; at && (at = std::strstr(at, extension)); at += length) {
        if ((at == all || at[-1] == ' ') && (at[length] == ' ' || at[length] == '\0')) return true;
    }
    return false;
}

// Displays of one kind share an EGLDisplay, and eglTerminate ends it for all: the last of its users terminates.
class Users {
public:
    bool initialize(EGLDisplay display) {
        const std::lock_guard lock(_mutex);
        EGLint major = 0;
        EGLint minor = 0;
        if (!eglInitialize(display, &major, &minor)) return false;
        ++_count[display];
        return true;
    }
    bool terminate(EGLDisplay display) {
        const std::lock_guard lock(_mutex);
        if (--_count[display] > 0) return true;
        _count.erase(display);
        return eglTerminate(display) == EGL_TRUE;
    }

private:
    std::mutex _mutex;
    std::map<EGLDisplay, int> _count;
};

Users& users() {
    static Users all;
    return all;
}

}  // namespace

Platform::Platform(Kind wanted, void* nativeDisplay) : _wanted(wanted) {
#ifdef EGL_VERSION_1_5
    if (wanted == Kind::x11 && knows("EGL_EXT_platform_xcb") && (_connection = XConnection::open())) {
        const EGLAttrib attributes[] = {EGL_PLATFORM_XCB_SCREEN_EXT, _connection->screen(), EGL_NONE};
        _display = eglGetPlatformDisplay(EGL_PLATFORM_XCB_EXT, _connection->native(), attributes);
    } else if (wanted == Kind::wayland && (knows("EGL_EXT_platform_wayland") || knows("EGL_KHR_platform_wayland"))) {
        _display = eglGetPlatformDisplay(EGL_PLATFORM_WAYLAND_KHR, nativeDisplay, nullptr);
    } else if (wanted == Kind::offscreen && knows("EGL_MESA_platform_surfaceless")) {
        _display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    }
#endif
    if (_display) return;
    _connection.reset();
    // The display that EGL chooses itself offers windows, pixel buffers or both.
    _display =
        eglGetDisplay(wanted == Kind::wayland ? static_cast<EGLNativeDisplayType>(nativeDisplay) : EGL_DEFAULT_DISPLAY);
}

Platform::~Platform() {
    terminate();
}

EGLint Platform::surfaceType() const {
    return _wanted == Kind::offscreen ? EGL_PBUFFER_BIT : EGL_WINDOW_BIT;
}

bool Platform::initialize() {
    if (!_initialized) _initialized = users().initialize(_display);
    return _initialized;
}

bool Platform::terminate() {
    if (!_initialized) return false;
    _initialized = false;
    return users().terminate(_display);
}

bool Platform::hasWindow(void* window) const {
    int width = 0;
    int height = 0;
    return !_connection || _connection->windowSize(reinterpret_cast<std::uintptr_t>(window), width, height);
}

EGLSurface Platform::createWindowSurface(EGLConfig config, void* window) const {
    return eglCreateWindowSurface(_display, config, reinterpret_cast<EGLNativeWindowType>(window), nullptr);
}

EGLSurface Platform::createOffscreenSurface(EGLConfig config, const OffscreenSize& size) const {
    const EGLint attributes[] = {EGL_WIDTH, size.width, EGL_HEIGHT, size.height, EGL_NONE};
    return eglCreatePbufferSurface(_display, config, attributes);
}

bool Platform::canSwap() const {
    return !_connection || _connection->isAliveNow();
}

bool Platform::isAlive() const {
    return !_connection || _connection->isAlive();
}

}  // namespace zet::ZETShow
