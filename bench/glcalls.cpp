// Stands between the module and GL at link time (-Wl,--wrap) and writes its calls down.

#include "glcalls.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace bench {

namespace {

std::atomic<bool> recording = false;
std::atomic<std::size_t> shown = 0;

// A vertex array of floats, as it stands until its attribute is disabled.
struct Array {
    const void* source;
    GLint size;
    GLsizei stride;
    std::vector<std::uint8_t> own;  // its vertices, once a draw has told how many there are
};
std::shared_ptr<Array> arrays[16];
constexpr int mostCopied = 64;  // vertices: larger arrays belong to the view and stay where they are

void copyVertices(int count) {
    if (count > mostCopied) return;
    for (const auto& array : arrays) {
        if (!array || !array->own.empty()) continue;
        const auto vertex = static_cast<std::size_t>(array->size) * sizeof(float);
        const auto stride = array->stride != 0 ? static_cast<std::size_t>(array->stride) : vertex;
        const auto* const bytes = static_cast<const std::uint8_t*>(array->source);
        array->own.assign(bytes, bytes + stride * static_cast<std::size_t>(count - 1) + vertex);
    }
}

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

std::recursive_mutex& swapping() {
    static std::recursive_mutex mutex;
    return mutex;
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
PASS(glEnable, (GLenum a), (a))
PASS(glEnableVertexAttribArray, (GLuint a), (a))
PASS(glFinish, (), ())
PASS(glFramebufferTexture2D, (GLenum a, GLenum b, GLenum c, GLuint d, GLint e), (a, b, c, d, e))
PASS(glLineWidth, (GLfloat a), (a))
PASS(glLinkProgram, (GLuint a), (a))
PASS(glPixelStorei, (GLenum a, GLint b), (a, b))
PASS(glTexParameteri, (GLenum a, GLenum b, GLint c), (a, b, c))
PASS(glUniform1f, (GLint a, GLfloat b), (a, b))
PASS(glUniform1i, (GLint a, GLint b), (a, b))
PASS(glUniform2f, (GLint a, GLfloat b, GLfloat c), (a, b, c))
PASS(glUniform3f, (GLint a, GLfloat b, GLfloat c, GLfloat d), (a, b, c, d))
PASS(glUniform4f, (GLint a, GLfloat b, GLfloat c, GLfloat d, GLfloat e), (a, b, c, d, e))
PASS(glUseProgram, (GLuint a), (a))
PASS(glViewport, (GLint a, GLint b, GLsizei c, GLsizei d), (a, b, c, d))

GENERATE(glGenFramebuffers)
GENERATE(glGenTextures)

UNIFORM_VECTOR(glUniform2fv, 2)
UNIFORM_VECTOR(glUniform3fv, 3)
UNIFORM_VECTOR(glUniform4fv, 4)

extern "C" {

decltype(glVertexAttribPointer) __real_glVertexAttribPointer, __wrap_glVertexAttribPointer;
void __wrap_glVertexAttribPointer(GLuint index, GLint size, GLenum type, GLboolean normalised, GLsizei stride,
                                  const void* data) {
    if (bench::recording) {
        const auto array = std::make_shared<bench::Array>(bench::Array{data, size, stride, {}});
        bench::arrays[index] = array;
        record([=] {
            const void* const from = array->own.empty() ? data : array->own.data();
            __real_glVertexAttribPointer(index, size, type, normalised, stride, from);
        });
    }
    __real_glVertexAttribPointer(index, size, type, normalised, stride, data);
}

decltype(glDisableVertexAttribArray) __real_glDisableVertexAttribArray, __wrap_glDisableVertexAttribArray;
void __wrap_glDisableVertexAttribArray(GLuint index) {
    if (bench::recording) bench::arrays[index].reset();
    record([=] { __real_glDisableVertexAttribArray(index); });
    __real_glDisableVertexAttribArray(index);
}

decltype(glDrawArrays) __real_glDrawArrays, __wrap_glDrawArrays;
void __wrap_glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    if (bench::recording) bench::copyVertices(first + count);
    record([=] { __real_glDrawArrays(mode, first, count); });
    __real_glDrawArrays(mode, first, count);
}

decltype(glTexImage2D) __real_glTexImage2D, __wrap_glTexImage2D;
void __wrap_glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border,
                         GLenum format, GLenum type, const void* data) {
    // Labels are written into one buffer in turn; the halo's planes go once they are uploaded.
    std::vector<std::uint8_t> own;
    if (bench::recording && (format == GL_ALPHA || format == GL_LUMINANCE)) {
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        own.assign(bytes, bytes + static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    }
    record([=] {
        __real_glTexImage2D(target, level, internalFormat, width, height, border, format, type,
                            own.empty() ? data : own.data());
    });
    __real_glTexImage2D(target, level, internalFormat, width, height, border, format, type, data);
}

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
    const std::lock_guard lock(bench::swapping());
    return __real_eglSwapBuffers(display, surface);
}

}  // extern "C"
