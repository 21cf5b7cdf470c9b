#pragma once

#include <GLES2/gl2.h>

namespace zet::ZETShow {

// Render thread, with the context current.

/// A linked program's name, or 0 if a stage doesn't compile or the two don't link. Says nothing of the cause.
GLuint buildProgram(const char* vertexSource, const char* fragmentSource);

}  // namespace zet::ZETShow
