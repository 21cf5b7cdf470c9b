// The EGL side of the display: connection and context once, a surface for each window.

#include "display/display.h"
#include "display/eglusers.h"
#include "render/render.h"
#include "render/renderfactory.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

constexpr int unsupportedError = 3;

constexpr EGLint configAttributes[] = {
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
    EGL_WINDOW_BIT,
    EGL_NONE,
};

constexpr EGLint contextAttributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};

}  // namespace

int Display::init() {
    ZETLog::instance().error("Display::init begin");
    _eglDisplay = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if (!_eglDisplay) {
        _globalConfiger->onErrorCallback(unsupportedError, "MERR_UNSUPPORTED", __FILE__, __LINE__);
        return -1;
    }
    if (!_eglInitialized && !initializeEgl(_eglDisplay)) return -1;
    _eglInitialized = true;
    EGLint found = 0;
    if (!eglChooseConfig(_eglDisplay, configAttributes, &_eglConfig, 1, &found) || found < 1) return -1;
    _eglContext = eglCreateContext(_eglDisplay, _eglConfig, EGL_NO_CONTEXT, contextAttributes);
    if (!_eglContext) return -1;
    _config->setConfig(DCFG_GL_CONTEXT, _eglContext);
    ZETLog::instance().error("Display::init end");
    return 0;
}

int Display::unInit() {
    auto& log = ZETLog::instance();
    log.error("Display::unInit begin");
    _config->setConfig(DCFG_GL_CONTEXT, nullptr);
    dropPicture();
    eglMakeCurrent(_eglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (_eglDisplay && _eglSurface) {
        log.error("Display::unInit eglDestroySurface %d",
                  static_cast<int>(eglDestroySurface(_eglDisplay, _eglSurface)));
    }
    if (_eglDisplay && _eglContext) {
        log.error("Display::unInit eglDestroyContext %d",
                  static_cast<int>(eglDestroyContext(_eglDisplay, _eglContext)));
    }
    const EGLBoolean terminated = _eglInitialized ? terminateEgl(_eglDisplay) : EGL_FALSE;
    log.error("Display::unInit eglTerminate %d", static_cast<int>(terminated));
    log.error("Display::unInit eglReleaseThread %d", static_cast<int>(eglReleaseThread()));
    _eglInitialized = false;
    _eglSurface = nullptr;
    _eglContext = nullptr;
    _eglDisplay = nullptr;
    _window = nullptr;
    log.error("Display::unInit end");
    return 0;
}

int Display::windowTask(const DisplayConfigUserData& delivery) {
    dropSurface();
    if (!delivery.getData()) return 0;
    if (!_eglContext) init();
    void* const window = _window;
    _eglSurface =
        eglCreateWindowSurface(_eglDisplay, _eglConfig, reinterpret_cast<EGLNativeWindowType>(window), nullptr);
    if (!_eglSurface) return -1;
    // A snapshot reads what was shown: ask for the back buffer to survive the swap, where the config has it.
    eglSurfaceAttrib(_eglDisplay, _eglSurface, EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED);
    eglMakeCurrent(_eglDisplay, _eglSurface, _eglSurface, _eglContext);
    if (makeCurrent() != 0) return -1;
    checkFragmentPrecision();
    if (!_render) _render = createRender(_renderMode, _frame.color, _config, this);
    return 0;
}

void Display::dropSurface() {
    auto& log = ZETLog::instance();
    log.error("Display::onWindowInstance begin surface delete begin");
    if (_eglContext && _eglSurface) {
        dropPicture();
        _frameReady = 0;  // a frame not yet drawn is gone too, and would keep out the first one of the new window
        eglMakeCurrent(_eglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    if (_eglSurface) {  // also where there is no context yet: a window takes one surface at a time
        log.error("Display::onWindowInstance eglDestroySurface %d",
                  static_cast<int>(eglDestroySurface(_eglDisplay, _eglSurface)));
    }
    _eglSurface = nullptr;
    log.error("Display::onWindowInstance begin surface delete end");
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
    return eglMakeCurrent(_eglDisplay, _eglSurface, _eglSurface, _eglContext) ? 0 : -1;
}

int Display::swapBuffers() {
    return eglSwapBuffers(_eglDisplay, _eglSurface) ? 0 : -1;
}

}  // namespace zet::ZETShow
