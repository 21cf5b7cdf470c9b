#include "support/eglcalls.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zet::test {

namespace {

struct Wrapped {
    std::atomic<int> calls = 0;
    std::atomic<bool> fails = false;
};

Wrapped wrapped[static_cast<int>(EglCall::shaderSource) + 1];

std::mutex swapMutex;
std::condition_variable swapped;
int swaps = 0;
std::mutex hookMutex;  // held while the hook runs
std::function<void()> swapHook;

Wrapped& of(EglCall call) {
    return wrapped[static_cast<int>(call)];
}

bool fails(EglCall call) {
    ++of(call).calls;
    return of(call).fails;
}

}  // namespace

int eglCalls(EglCall call) {
    return of(call).calls;
}

void failEgl(EglCall call) {
    of(call).fails = true;
}

void resetEgl() {
    for (Wrapped& one : wrapped) {
        one.fails = false;
        one.calls = 0;
    }
}

SwapHook::SwapHook(const std::function<void()>& function) {
    const std::lock_guard lock(hookMutex);
    swapHook = function;
}

SwapHook::~SwapHook() {
    const std::lock_guard lock(hookMutex);
    swapHook = nullptr;
}

int swapsEnded() {
    const std::lock_guard lock(swapMutex);
    return swaps;
}

bool waitForSwaps(int count, int since) {
    std::unique_lock lock(swapMutex);
    return swapped.wait_for(lock, std::chrono::seconds(10), [&] { return swaps - since >= count; });
}

// The linker sends the module's calls here: -Wl,--wrap=NAME.
#define ZET_DECLARE(name) extern "C" decltype(name) __real_##name, __wrap_##name
#define ZET_WRAP(name, call, parameters, arguments)                    \
    ZET_DECLARE(name);                                                 \
    auto __wrap_##name parameters->decltype(__real_##name arguments) { \
        if (fails(EglCall::call)) return {};                           \
        return __real_##name arguments;                                \
    }

ZET_WRAP(eglGetDisplay, getDisplay, (EGLNativeDisplayType native), (native))
ZET_WRAP(eglInitialize, initialize, (EGLDisplay display, EGLint* major, EGLint* minor), (display, major, minor))
ZET_WRAP(eglTerminate, terminate, (EGLDisplay display), (display))
ZET_WRAP(eglChooseConfig, chooseConfig,
         (EGLDisplay display, const EGLint* attributes, EGLConfig* configs, EGLint size, EGLint* found),
         (display, attributes, configs, size, found))
ZET_WRAP(eglCreateContext, createContext,
         (EGLDisplay display, EGLConfig config, EGLContext shared, const EGLint* attributes),
         (display, config, shared, attributes))
ZET_WRAP(eglCreateWindowSurface, createWindowSurface,
         (EGLDisplay display, EGLConfig config, EGLNativeWindowType window, const EGLint* attributes),
         (display, config, window, attributes))
ZET_WRAP(eglQuerySurface, querySurface, (EGLDisplay display, EGLSurface surface, EGLint attribute, EGLint* value),
         (display, surface, attribute, value))
ZET_WRAP(eglSwapInterval, swapInterval, (EGLDisplay display, EGLint interval), (display, interval))

// Not counted: where it fails the module calls eglGetDisplay, which is counted.
ZET_DECLARE(eglGetPlatformDisplay);
EGLDisplay __wrap_eglGetPlatformDisplay(EGLenum platform, void* native, const EGLAttrib* attributes) {
    if (of(EglCall::getDisplay).fails) return EGL_NO_DISPLAY;
    return __real_eglGetPlatformDisplay(platform, native, attributes);
}

ZET_DECLARE(eglMakeCurrent);
EGLBoolean __wrap_eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read, EGLContext context) {
    if (context != EGL_NO_CONTEXT && fails(EglCall::makeCurrent)) return EGL_FALSE;
    return __real_eglMakeCurrent(display, draw, read, context);
}

ZET_DECLARE(eglSwapBuffers);
EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    {
        const std::lock_guard lock(hookMutex);
        if (swapHook) swapHook();
    }
    const EGLBoolean result = fails(EglCall::swapBuffers) ? EGL_FALSE : __real_eglSwapBuffers(display, surface);
    const std::lock_guard lock(swapMutex);
    ++swaps;
    swapped.notify_all();
    return result;
}

ZET_DECLARE(glShaderSource);
void __wrap_glShaderSource(GLuint shader, GLsizei count, const GLchar* const* texts, const GLint* lengths) {
    const GLchar* const noShader = "no shader";
    if (fails(EglCall::shaderSource)) return __real_glShaderSource(shader, 1, &noShader, nullptr);
    __real_glShaderSource(shader, count, texts, lengths);
}

}  // namespace zet::test
