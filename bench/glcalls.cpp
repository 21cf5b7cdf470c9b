// Stands between the module and GL at link time (-Wl,--wrap) and writes its calls down.

#include "glcalls.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <atomic>
#include <string>

namespace bench {

namespace {

std::atomic<bool> recording = false;
std::atomic<std::size_t> shown = 0;

template <typename Call>
void record(const Call& call) {
    if (recording) GlCalls::recorded().calls.push_back(call);
}

}  // namespace

GlCalls& GlCalls::recorded() {
    static GlCalls all;
    return all;
}

void startRecording() {
    recording = true;
}

void stopRecording() {
    recording = false;
}

std::size_t shownFrames() {
    return shown;
}

}  // namespace bench

using bench::record;

#define PASS(NAME, PARAMETERS, ARGUMENTS)         \
    extern "C" decltype(NAME) __real_##NAME;      \
    extern "C" decltype(NAME) __wrap_##NAME;      \
    extern "C" void __wrap_##NAME PARAMETERS {    \
        record([=] { __real_##NAME ARGUMENTS; }); \
        __real_##NAME ARGUMENTS;                  \
    }

#define GENERATE(NAME)                                        \
    extern "C" decltype(NAME) __real_##NAME;                  \
    extern "C" decltype(NAME) __wrap_##NAME;                  \
    extern "C" void __wrap_##NAME(GLsizei n, GLuint* names) { \
        record([=] {                                          \
            std::vector<GLuint> own(static_cast<size_t>(n));  \
            __real_##NAME(n, own.data());                     \
        });                                                   \
        __real_##NAME(n, names);                              \
    }

#define UNIFORM_VECTOR(NAME, WIDTH)                                                       \
    extern "C" decltype(NAME) __real_##NAME;                                              \
    extern "C" decltype(NAME) __wrap_##NAME;                                              \
    extern "C" void __wrap_##NAME(GLint location, GLsizei count, const GLfloat* values) { \
        const std::vector<GLfloat> own(values, values + count * WIDTH);                   \
        record([=] { __real_##NAME(location, count, own.data()); });                      \
        __real_##NAME(location, count, values);                                           \
    }

PASS(glActiveTexture, (GLenum a), (a))
PASS(glAttachShader, (GLuint a, GLuint b), (a, b))
PASS(glBindFramebuffer, (GLenum a, GLuint b), (a, b))
PASS(glBindTexture, (GLenum a, GLuint b), (a, b))
PASS(glBlendFunc, (GLenum a, GLenum b), (a, b))
PASS(glClear, (GLbitfield a), (a))
PASS(glClearColor, (GLfloat a, GLfloat b, GLfloat c, GLfloat d), (a, b, c, d))
PASS(glCompileShader, (GLuint a), (a))
PASS(glDeleteProgram, (GLuint a), (a))
PASS(glDeleteShader, (GLuint a), (a))
PASS(glDepthFunc, (GLenum a), (a))
PASS(glDepthMask, (GLboolean a), (a))
PASS(glDisable, (GLenum a), (a))
PASS(glDisableVertexAttribArray, (GLuint a), (a))
PASS(glDrawArrays, (GLenum a, GLint b, GLsizei c), (a, b, c))
PASS(glEnable, (GLenum a), (a))
PASS(glEnableVertexAttribArray, (GLuint a), (a))
PASS(glFinish, (), ())
PASS(glFramebufferTexture2D, (GLenum a, GLenum b, GLenum c, GLuint d, GLint e), (a, b, c, d, e))
PASS(glLineWidth, (GLfloat a), (a))
PASS(glLinkProgram, (GLuint a), (a))
PASS(glPixelStorei, (GLenum a, GLint b), (a, b))
PASS(glTexImage2D, (GLenum a, GLint b, GLint c, GLsizei d, GLsizei e, GLint f, GLenum g, GLenum h, const void* i),
     (a, b, c, d, e, f, g, h, i))
PASS(glTexParameteri, (GLenum a, GLenum b, GLint c), (a, b, c))
PASS(glUniform1f, (GLint a, GLfloat b), (a, b))
PASS(glUniform1i, (GLint a, GLint b), (a, b))
PASS(glUniform2f, (GLint a, GLfloat b, GLfloat c), (a, b, c))
PASS(glUniform3f, (GLint a, GLfloat b, GLfloat c, GLfloat d), (a, b, c, d))
PASS(glUniform4f, (GLint a, GLfloat b, GLfloat c, GLfloat d, GLfloat e), (a, b, c, d, e))
PASS(glUseProgram, (GLuint a), (a))
PASS(glVertexAttribPointer, (GLuint a, GLint b, GLenum c, GLboolean d, GLsizei e, const void* f), (a, b, c, d, e, f))
PASS(glViewport, (GLint a, GLint b, GLsizei c, GLsizei d), (a, b, c, d))

GENERATE(glGenFramebuffers)
GENERATE(glGenTextures)

UNIFORM_VECTOR(glUniform2fv, 2)
UNIFORM_VECTOR(glUniform3fv, 3)
UNIFORM_VECTOR(glUniform4fv, 4)

extern "C" {

decltype(glUniformMatrix4fv) __real_glUniformMatrix4fv, __wrap_glUniformMatrix4fv;
void __wrap_glUniformMatrix4fv(GLint location, GLsizei count, GLboolean transpose, const GLfloat* values) {
    const std::vector<GLfloat> own(values, values + count * 16);
    record([=] { __real_glUniformMatrix4fv(location, count, transpose, own.data()); });
    __real_glUniformMatrix4fv(location, count, transpose, values);
}

decltype(glShaderSource) __real_glShaderSource, __wrap_glShaderSource;
void __wrap_glShaderSource(GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths) {
    const std::string own = texts[0];
    record([=] {
        const GLchar* const text = own.c_str();
        __real_glShaderSource(shader, 1, &text, nullptr);
    });
    __real_glShaderSource(shader, count, texts, lengths);
}

decltype(glCreateShader) __real_glCreateShader, __wrap_glCreateShader;
GLuint __wrap_glCreateShader(GLenum type) {
    record([=] { __real_glCreateShader(type); });
    return __real_glCreateShader(type);
}

decltype(glCreateProgram) __real_glCreateProgram, __wrap_glCreateProgram;
GLuint __wrap_glCreateProgram() {
    record([] { __real_glCreateProgram(); });
    return __real_glCreateProgram();
}

decltype(eglSwapBuffers) __real_eglSwapBuffers, __wrap_eglSwapBuffers;
EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    if (bench::recording) bench::GlCalls::recorded().frameEnds.push_back(bench::GlCalls::recorded().calls.size());
    ++bench::shown;
    return __real_eglSwapBuffers(display, surface);
}

}  // extern "C"
