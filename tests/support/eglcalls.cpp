#include "support/eglcalls.h"

#include <EGL/egl.h>

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

Wrapped wrapped[static_cast<int>(EglCall::swapBuffers) + 1];

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

void runSwapHook() {
    const std::lock_guard lock(hookMutex);
    if (swapHook) swapHook();
}

void setSwapHook(const std::function<void()>& hook) {
    const std::lock_guard lock(hookMutex);
    swapHook = hook;
}

void noteSwap() {
    const std::lock_guard lock(swapMutex);
    ++swaps;
    swapped.notify_all();
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
    setSwapHook(function);
}

SwapHook::~SwapHook() {
    setSwapHook(nullptr);
}

std::mutex& connecting() {
    static std::mutex mutex;
    return mutex;
}

int swapsEnded() {
    const std::lock_guard lock(swapMutex);
    return swaps;
}

bool waitForSwaps(int count, int since) {
    std::unique_lock lock(swapMutex);
    return swapped.wait_for(lock, std::chrono::seconds(10), [&] { return swaps - since >= count; });
}

}  // namespace zet::test

// The linker sends the module's calls here: -Wl,--wrap=NAME.
#define ZET_WRAP(result, name, call, failure, parameters, arguments)                           \
    extern "C" result __real_##name parameters;                                                \
    extern "C" result __wrap_##name parameters;                                                \
    result __wrap_##name parameters {                                                          \
        return zet::test::fails(zet::test::EglCall::call) ? failure : __real_##name arguments; \
    }

ZET_WRAP(EGLDisplay, eglGetDisplay, getDisplay, nullptr, (EGLNativeDisplayType native), (native))
ZET_WRAP(EGLBoolean, eglTerminate, terminate, EGL_FALSE, (EGLDisplay display), (display))
ZET_WRAP(EGLBoolean, eglChooseConfig, chooseConfig, EGL_FALSE,
         (EGLDisplay display, const EGLint* attributes, EGLConfig* configs, EGLint size, EGLint* found),
         (display, attributes, configs, size, found))
ZET_WRAP(EGLContext, eglCreateContext, createContext, nullptr,
         (EGLDisplay display, EGLConfig config, EGLContext shared, const EGLint* attributes),
         (display, config, shared, attributes))
ZET_WRAP(EGLSurface, eglCreateWindowSurface, createWindowSurface, nullptr,
         (EGLDisplay display, EGLConfig config, EGLNativeWindowType window, const EGLint* attributes),
         (display, config, window, attributes))
ZET_WRAP(EGLBoolean, eglQuerySurface, querySurface, EGL_FALSE,
         (EGLDisplay display, EGLSurface surface, EGLint attribute, EGLint* value),
         (display, surface, attribute, value))
ZET_WRAP(EGLBoolean, eglSwapInterval, swapInterval, EGL_FALSE, (EGLDisplay display, EGLint interval),
         (display, interval))

extern "C" EGLBoolean __real_eglInitialize(EGLDisplay, EGLint*, EGLint*);
extern "C" EGLBoolean __wrap_eglInitialize(EGLDisplay, EGLint*, EGLint*);
EGLBoolean __wrap_eglInitialize(EGLDisplay display, EGLint* major, EGLint* minor) {
    const std::lock_guard lock(zet::test::connecting());
    if (zet::test::fails(zet::test::EglCall::initialize)) return EGL_FALSE;
    return __real_eglInitialize(display, major, minor);
}

extern "C" EGLBoolean __real_eglMakeCurrent(EGLDisplay, EGLSurface, EGLSurface, EGLContext);
extern "C" EGLBoolean __wrap_eglMakeCurrent(EGLDisplay, EGLSurface, EGLSurface, EGLContext);
EGLBoolean __wrap_eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read, EGLContext context) {
    if (context != EGL_NO_CONTEXT && zet::test::fails(zet::test::EglCall::makeCurrent)) return EGL_FALSE;
    return __real_eglMakeCurrent(display, draw, read, context);
}

extern "C" EGLBoolean __real_eglSwapBuffers(EGLDisplay, EGLSurface);
extern "C" EGLBoolean __wrap_eglSwapBuffers(EGLDisplay, EGLSurface);
EGLBoolean __wrap_eglSwapBuffers(EGLDisplay display, EGLSurface surface) {
    zet::test::runSwapHook();
    const bool failed = zet::test::fails(zet::test::EglCall::swapBuffers);
    const EGLBoolean result = failed ? EGL_FALSE : __real_eglSwapBuffers(display, surface);
    zet::test::noteSwap();
    return result;
}
