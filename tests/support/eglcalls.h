#pragma once

#include <functional>

namespace zet::test {

/// EGL functions that pass through the tests: counted, and made to fail. `makeCurrent` means only the calls that make
/// a context current, not those that let it go. `shaderSource` is GL's: when it fails, the shader gets a text that
/// doesn't compile.
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
/// Calls from now on fail, those of EGL without reaching it, until `resetEgl`.
void failEgl(EglCall call);
/// Nothing fails, counts are 0.
void resetEgl();
/// Runs a function on the render thread before each swap, with the context current and the display's lock held, until
/// the hook goes. To be declared behind what the function uses: it doesn't run any longer then.
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
