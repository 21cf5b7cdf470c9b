// The EGL side of the display: connection and context once, a surface for each window.

#include <climits>
#include <string>
#include <utility>

#include "display/display.h"
#include "display/eglerror.h"
#include "render/render.h"
#include "render/renderfactory.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

const char* text(GLenum name) {
    const GLubyte* const value = glGetString(name);
    return value ? reinterpret_cast<const char*>(value) : "unknown";
}

constexpr EGLint contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};

}  // namespace

int Display::init() {
    ZETLog::instance().debug("Display::init begin");
    if (!openPlatform()) return -1;
    if (!_platform->initialize()) return tellEgl("eglInitialize", __LINE__);
    const EGLint configAttributes[] = {
        EGL_RED_SIZE,
        8,
        EGL_GREEN_SIZE,
        8,
        EGL_BLUE_SIZE,
        8,
        EGL_ALPHA_SIZE,
        8,
        EGL_DEPTH_SIZE,
        8,
        EGL_RENDERABLE_TYPE,
        EGL_OPENGL_ES2_BIT,
        EGL_SURFACE_TYPE,
        _platform->surfaceType(),
        EGL_NONE,
    };
    EGLint found = 0;
    if (!eglChooseConfig(_eglDisplay, configAttributes, &_eglConfig, 1, &found) || found < 1) {
        return tellEgl("eglChooseConfig", __LINE__);
    }
    _eglContext = eglCreateContext(_eglDisplay, _eglConfig, EGL_NO_CONTEXT, contextAttributes);
    if (!_eglContext) return tellEgl("eglCreateContext", __LINE__);
    ZETLog::instance().info("EGL: %s, %s", eglQueryString(_eglDisplay, EGL_VENDOR),
                            eglQueryString(_eglDisplay, EGL_VERSION));
    _config->setConfig(DCFG_GL_CONTEXT, _eglContext);
    ZETLog::instance().debug("Display::init end");
    return 0;
}

bool Display::openPlatform() {
    const bool suits = _platform && _platform->display() && _platform->wanted() == _wanted && _platform->isAlive();
    if (!suits) {
        _platform.reset();
        _platform = std::make_unique<Platform>(_wanted, _nativeDisplay);
        _eglDisplay = _platform->display();
    }
    if (_eglDisplay) return true;
    tell(DISPLAY_ERROR_UNSUPPORTED, "MERR_UNSUPPORTED", __LINE__);
    return false;
}

int Display::unInit() {
    auto& log = ZETLog::instance();
    log.debug("Display::unInit begin");
    _config->setConfig(DCFG_GL_CONTEXT, nullptr);
    dropPicture();
    eglMakeCurrent(_eglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (_eglDisplay && _eglSurface) {
        log.debug("Display::unInit eglDestroySurface %d",
                  static_cast<int>(eglDestroySurface(_eglDisplay, _eglSurface)));
    }
    if (_eglDisplay && _eglContext) {
        log.debug("Display::unInit eglDestroyContext %d",
                  static_cast<int>(eglDestroyContext(_eglDisplay, _eglContext)));
    }
    log.debug("Display::unInit eglTerminate %d", static_cast<int>(_platform && _platform->terminate()));
    log.debug("Display::unInit eglReleaseThread %d", static_cast<int>(eglReleaseThread()));
    _eglSurface = nullptr;
    _eglContext = nullptr;
    _eglDisplay = nullptr;
    _platform.reset();
    log.debug("Display::unInit end");
    return 0;
}

int Display::windowTask(const DisplayConfigUserData& delivery) {
    // In a replay null is what there was before the size.
    const bool isReplay = (delivery.getState() & int{DCFG_FLAG_REPLAY}) != 0;
    if (!delivery.getData() && isReplay && _wanted == Platform::Kind::offscreen) return 0;
    dropSurface();
    _surfaceWanted = delivery.getData() != nullptr;
    if (!_surfaceWanted) return 0;
    _wanted = _nativeDisplay ? Platform::Kind::wayland : Platform::Kind::x11;
    return takeSurface();
}

int Display::offscreenTask(const OffscreenSize* size) {
    _failureTold = false;
    _surfaceWanted = true;
    if (!size || !sizeIsDrawable(*size)) return -1;
    const bool stays = _eglSurface && _wanted == Platform::Kind::offscreen;
    _wanted = Platform::Kind::offscreen;
    _offscreenSize = *size;
    if (stays) return resizeOffscreen();
    dropSurface();
    return takeSurface();
}

// View and picture stay, as they do in a window that is resized.
int Display::resizeOffscreen() {
    EGLSurface last = std::exchange(_eglSurface, nullptr);
    if (makeSurface()) eglMakeCurrent(_eglDisplay, _eglSurface, _eglSurface, _eglContext);
    if (_eglSurface) {
        eglDestroySurface(_eglDisplay, last);
        return 0;
    }
    _eglSurface = last;
    dropSurface();
    return -1;
}

int Display::nativeDisplayTask(void* display) {
    if (display == _nativeDisplay) return 0;
    _nativeDisplay = display;
    if (_wanted == Platform::Kind::offscreen) return 0;
    dropSurface();
    if (_eglContext) unInit();
    _wanted = display ? Platform::Kind::wayland : Platform::Kind::x11;
    return 0;
}

int Display::takeSurface() {
    _failureTold = false;
    if (_eglContext && (_platform->wanted() != _wanted || !_platform->isAlive())) unInit();
    if (!_eglContext) init();
    if (!makeSurface()) return -1;
    // A snapshot reads what was shown: ask for the back buffer to survive the swap, where the config has it.
    eglSurfaceAttrib(_eglDisplay, _eglSurface, EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED);
    eglMakeCurrent(_eglDisplay, _eglSurface, _eglSurface, _eglContext);
    if (makeCurrent() != 0) return -1;
    // A compositor asks a hidden window for no frames, and a swap would wait for that.
    if (_wanted == Platform::Kind::wayland) eglSwapInterval(_eglDisplay, 0);
    if (_wanted == Platform::Kind::offscreen && !sizeIsDrawable(_offscreenSize)) {
        dropSurface();
        return -1;
    }
    ZETLog::instance().info("GL: %s, %s", text(GL_RENDERER), text(GL_VERSION));
    checkFragmentPrecision();
    if (!_render) _render = createRender(_renderMode, _frame.color, _config, this);
    return 0;
}

// EGL makes pixel buffers larger than GL can draw. GL tells its limit only while a context is current.
bool Display::sizeIsDrawable(const OffscreenSize& size) {
    GLint limits[2] = {INT_MAX, INT_MAX};
    if (_eglSurface && eglGetCurrentContext() == _eglContext) glGetIntegerv(GL_MAX_VIEWPORT_DIMS, limits);
    if (holdsPicture(INT_MAX, size.width, size.height) && size.width <= limits[0] && size.height <= limits[1]) {
        return true;
    }
    tell(DISPLAY_ERROR_SIZE, "there is no picture of that size", __LINE__);
    return false;
}

bool Display::makeSurface() {
    void* const window = _window;
    if (_wanted == Platform::Kind::offscreen) {
        _eglSurface = _platform->createOffscreenSurface(_eglConfig, _offscreenSize);
        if (!_eglSurface) tellEgl("eglCreatePbufferSurface", __LINE__);
    } else if (!_platform->hasWindow(window)) {
        tell(DISPLAY_ERROR_WINDOW, "there is no such window", __LINE__);
    } else {
        _eglSurface = _platform->createWindowSurface(_eglConfig, window);
        if (!_eglSurface) tellEgl("eglCreateWindowSurface", __LINE__);
    }
    return _eglSurface != nullptr;
}

void Display::dropSurface() {
    auto& log = ZETLog::instance();
    log.debug("Display::onWindowInstance begin surface delete begin");
    if (_eglContext && _eglSurface) {
        dropPicture();
        _frameReady = 0;  // a frame not yet drawn is lost too; marked as ready it would block the new window's first
        eglMakeCurrent(_eglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    if (_eglSurface) {  // also where there is no context yet: a window takes one surface at a time
        log.debug("Display::onWindowInstance eglDestroySurface %d",
                  static_cast<int>(eglDestroySurface(_eglDisplay, _eglSurface)));
    }
    _eglSurface = nullptr;
    log.debug("Display::onWindowInstance begin surface delete end");
}

void Display::dropPicture() {
    _render.reset();
    _reader.reset();
    _frame.clear();
}

int Display::makeCurrent() {
    if (!_eglContext) init();
    if (!_eglSurface) return -1;
    if (eglGetCurrentContext() == _eglContext) return 0;
    eglSwapInterval(_eglDisplay, 0);
    if (eglMakeCurrent(_eglDisplay, _eglSurface, _eglSurface, _eglContext)) return 0;
    return tellEgl("eglMakeCurrent", __LINE__);
}

int Display::swapBuffers() {
    if (!_platform->canSwap()) {
        loseServer();
        return -1;
    }
    // Without the lock: a swap to a server that dies meanwhile may never return, and nobody must wait for it.
    _swapBegan = Condition::Clock::now();
    _mutex.unlock();
    const EGLBoolean swapped = eglSwapBuffers(_eglDisplay, _eglSurface);
    const EGLint error = swapped ? EGL_SUCCESS : eglGetError();
    _mutex.lock();
    _idleCond.waitWhile(_mutex, [this] { return _gaveUp; });  // for ever: what the display used may be gone
    _swapBegan.reset();
    if (!swapped && error != _swapError) {
        ZETLog::instance().warning("Display::swapBuffers eglSwapBuffers: %s", eglErrorName(error));
    }
    _swapError = error;
    return swapped ? 0 : -1;
}

void Display::loseServer() {
    tell(DISPLAY_ERROR_SERVER, "the display server is gone", __LINE__);
    dropSurface();
}

int Display::tellEgl(const char* call, int line) {
    const EGLint error = eglGetError();
    tell(DISPLAY_ERROR_EGL, (std::string(call) + ": " + eglErrorName(error)).c_str(), line);
    return -1;
}

// A failure is reported once for each window, though each frame tries again. Without a window nobody misses a picture:
// the log is enough.
void Display::tell(int code, const char* what, int line) {
    const bool always = code == DISPLAY_ERROR_UNSUPPORTED;
    if (_failureTold && !always) return;
    if (!_failureTold && _surfaceWanted) ZETLog::instance().error("Display: no picture: %s", what);
    if (!_failureTold && !_surfaceWanted) ZETLog::instance().warning("Display: no EGL yet: %s", what);
    if (_surfaceWanted || always) _globalConfiger->onErrorCallback(code, what, __FILE__, line);
    _failureTold = true;
}

}  // namespace zet::ZETShow
