#pragma once

#include <GLES2/gl2.h>

#include <cstdint>

#include "render/frame.h"
#include "render/mesh.h"
#include "render/program.h"
#include "render/viewport.h"

namespace zet::ZETShow {

/// Whether `size` bytes hold an RGBA picture of these sides; false for sides below 1.
constexpr bool holdsPicture(int size, int width, int height) {
    return width > 0 && height > 0 && std::int64_t{width} * height <= size / 4;
}

/// Reads pixels into memory, RGBA, bottom row first: what the window shows, or the frame itself, which is drawn
/// offscreen for that. Render thread, with the context current.
class FrameReader {
public:
    FrameReader() = default;
    ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    /// Reads the whole frame. 0; -1 if `dataSize` bytes don't hold it or there is no program, with nothing written.
    int readFrame(const Frame& frame, void* data, int dataSize);
    /// Reads a part of the window surface. 0; -1 if it is empty or `dataSize` bytes don't hold it, with nothing
    /// written.
    static int readScreen(const Viewport& viewport, void* data, int dataSize);

private:
    int makeReady(const Frame& frame);

    // Made at the first use.
    FrameProgram _program;
    Mesh _quad;
    GLuint _frameBuffer = 0;
    GLuint _picture = 0;
};

}  // namespace zet::ZETShow
