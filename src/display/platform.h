#pragma once

#include <EGL/egl.h>

#include <memory>

#include "zet/records.h"

namespace zet::ZETShow {

class XConnection;

/// The way to EGL: a connection, and the surfaces that are made on it. Render thread, but for `isAlive`.
class Platform {
public:
    enum class Kind {
        standard,   ///< what EGL takes by itself
        x11,        ///< the server that DISPLAY names, by a connection of the module's own
        wayland,    ///< the player's wl_display
        offscreen,  ///< no display server
    };

    /// Asks for the EGLDisplay of that kind. X11 without a server, and each kind that EGL or the build doesn't know,
    /// becomes `standard`. `nativeDisplay` is for Wayland.
    Platform(Kind wanted, void* nativeDisplay);
    ~Platform();
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;

    Kind wanted() const { return _wanted; }
    EGLDisplay display() const { return _display; }  ///< null if there is none
    EGLint surfaceType() const;                      ///< bit that a config must have

    /// eglInitialize.
    bool initialize();
    /// eglTerminate, where nobody else uses the EGLDisplay; true if nothing failed.
    bool terminate();

    /// Whether `window` names a window; true where that can't be asked.
    bool hasWindow(void* window) const;
    /// Null if it failed.
    EGLSurface createWindowSurface(EGLConfig config, void* window) const;
    /// Null if it failed or there is no pixel buffer that large.
    EGLSurface createOffscreenSurface(EGLConfig config, const OffscreenSize& size) const;
    /// Whether there is still a server to take the next swap. Once false, it stays false.
    bool canSwap() const;

    /// False when the display server is gone. Any thread.
    bool isAlive() const;

private:
    const Kind _wanted;
    std::shared_ptr<XConnection> _connection;  // X11 only; goes after the EGLDisplay
    EGLDisplay _display = EGL_NO_DISPLAY;
    bool _initialized = false;
};

}  // namespace zet::ZETShow
