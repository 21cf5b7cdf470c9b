#include "display/eglusers.h"

#include <mutex>

namespace zet::ZETShow {

namespace {

std::mutex usersMutex;
int users = 0;  // of the one EGLDisplay that EGL_DEFAULT_DISPLAY names

}  // namespace

EGLBoolean initializeEgl(EGLDisplay display) {
    const std::lock_guard lock(usersMutex);
    EGLint major = 0;
    EGLint minor = 0;
    const EGLBoolean initialized = eglInitialize(display, &major, &minor);
    if (initialized) ++users;
    return initialized;
}

EGLBoolean terminateEgl(EGLDisplay display) {
    const std::lock_guard lock(usersMutex);
    return --users > 0 ? EGL_TRUE : eglTerminate(display);
}

}  // namespace zet::ZETShow
