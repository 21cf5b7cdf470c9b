#pragma once

#include <functional>

namespace zet::test {

/// EGL functions that tests count and make fail. `makeCurrent` means only the calls that make a context current, not
/// those that release it. `shaderSource` is GL's: when it fails, the shader gets a text that doesn't compile.
enum class EglCall {
    getDisplay,
    initialize,
    terminate,
    chooseConfig,
    createContext,
    createWindowSurface,
    makeCurrent,
    querySurface,
    swapInterval,
    swapBuffers,
    shaderSource,
};

/// Calls of all displays since the start of the program or the last `resetEgl`.
int eglCalls(EglCall call);
/// Calls fail from now on until `resetEgl`; those of EGL don't reach it.
void failEgl(EglCall call);
/// Nothing fails, counts are 0.
void resetEgl();
/// Runs a function on the render thread before each swap, with the context current and the display's lock held, until
/// the hook is destroyed. Declare it after what the function uses, so that the hook ends first.
class SwapHook {
public:
    explicit SwapHook(const std::function<void()>& function);
    ~SwapHook();
    SwapHook(const SwapHook&) = delete;
    SwapHook& operator=(const SwapHook&) = delete;
};
/// Swaps of all displays that have ended since the start of the program.
int swapsEnded();
/// Waits until `count` swaps have ended since `swapsEnded()` was `since`; false after 10 s.
bool waitForSwaps(int count, int since);

}  // namespace zet::test
