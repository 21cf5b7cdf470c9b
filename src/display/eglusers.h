#pragma once

#include <EGL/egl.h>

namespace zet::ZETShow {

// All displays of a process share one EGLDisplay, and eglTerminate ends it for all: its users are counted, and only
// the last one terminates. Any thread.

/// eglInitialize, counting one user if it succeeds.
EGLBoolean initializeEgl(EGLDisplay display);
/// Takes one user back; the last one's eglTerminate. True if nothing failed.
EGLBoolean terminateEgl(EGLDisplay display);

}  // namespace zet::ZETShow
