#pragma once

#include <EGL/egl.h>

namespace zet::ZETShow {

/// Name of a code of `eglGetError`, such as "EGL_BAD_ALLOC".
const char* eglErrorName(EGLint code);

}  // namespace zet::ZETShow
