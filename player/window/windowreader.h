#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "media/image.h"

struct _XDisplay;

namespace zetplay {

/// Reads the pixels of windows. Keeps its memory: a recording would otherwise allocate much of it for each picture.
class WindowReader {
public:
    explicit WindowReader(_XDisplay* display);
    ~WindowReader();
    WindowReader(const WindowReader&) = delete;
    WindowReader& operator=(const WindowReader&) = delete;

    /// What the X server holds for the whole of `window`; good until the next call. Throws `Failure` if the window
    /// can't be read.
    Pixels read(unsigned long window);

private:
    class SharedPicture;

    _XDisplay* _display;
    std::unique_ptr<SharedPicture> _shared;
    std::vector<std::uint32_t> _words;  // where the server shares no memory, or gives other pixels
};

}  // namespace zetplay
