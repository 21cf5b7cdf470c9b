#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace bench {

/// The GL calls that the module has made since its start, in order, each with its arguments: replayed in a fresh
/// context they do the same GL work with nothing around it. Client memory is not copied but for uniforms, shader texts,
/// labels, planes and small vertex arrays, so the module must stay alive, with its frame, for as long as its calls are
/// replayed.
struct GlCalls {
    using Call = std::function<void()>;

    std::vector<Call> calls;
    std::vector<std::size_t> frameEnds;  // index behind the last call of each shown frame, its swap left out

    static GlCalls& recorded();
};

/// The render thread must be idle at both.
void startRecording();
void stopRecording();

/// Held during each swap: who holds it stops the module's draws, and may swap.
std::recursive_mutex& swapping();

/// Frames that the module has shown since the program's start.
std::size_t shownFrames();

}  // namespace bench
