// Stands between the module and GL at link time (-Wl,--wrap).

#include "support/glnames.h"

#include <GLES2/gl2.h>

#include <atomic>

namespace {

std::atomic<int> live = 0;

}  // namespace

int zet::test::liveGlNames() {
    return live;
}

#define COUNT_NAMES(GENERATE, DELETE)                                   \
    extern "C" decltype(GENERATE) __real_##GENERATE, __wrap_##GENERATE; \
    extern "C" decltype(DELETE) __real_##DELETE, __wrap_##DELETE;       \
    extern "C" void __wrap_##GENERATE(GLsizei n, GLuint* names) {       \
        __real_##GENERATE(n, names), live += n;                         \
    }                                                                   \
    extern "C" void __wrap_##DELETE(GLsizei n, const GLuint* names) {   \
        __real_##DELETE(n, names), live -= n;                           \
    }

#define COUNT_OBJECTS(CREATE, DELETE, PARAMETERS, ARGUMENTS)      \
    extern "C" decltype(CREATE) __real_##CREATE, __wrap_##CREATE; \
    extern "C" decltype(DELETE) __real_##DELETE, __wrap_##DELETE; \
    extern "C" GLuint __wrap_##CREATE PARAMETERS {                \
        return ++live, __real_##CREATE ARGUMENTS;                 \
    }                                                             \
    extern "C" void __wrap_##DELETE(GLuint name) {                \
        __real_##DELETE(name), --live;                            \
    }

COUNT_NAMES(glGenTextures, glDeleteTextures)
COUNT_NAMES(glGenFramebuffers, glDeleteFramebuffers)
COUNT_OBJECTS(glCreateProgram, glDeleteProgram, (), ())
COUNT_OBJECTS(glCreateShader, glDeleteShader, (GLenum type), (type))
