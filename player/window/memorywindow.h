#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "window/window.h"

namespace zetplay {

/// A surface of the module's in memory: no screen, no display server, no events but `wake`.
class MemoryWindow : public Window {
public:
    MemoryWindow(int width, int height) : _width(width), _height(height) {}

    std::uintptr_t handle() const override { return 0; }
    int width() const override { return _width; }
    int height() const override { return _height; }
    void setTitle(const std::string&) override {}
    /// The module has to be told.
    void resize(int width, int height) override;
    void toggleFullScreen() override {}
    void waitForEvents(int timeoutMs) override;
    Pixels read() override;
    /// Reads what is drawn. On the module's render thread, at its notice of a draw.
    void take() override;

private:
    struct Taken {
        int width = 0;
        int height = 0;
        std::vector<std::uint8_t> rgba;  // bottom row first
    };

    int _width;
    int _height;
    std::mutex _mutex;
    bool _isNew = false;
    Taken _coming;  // the render thread's
    Taken _shown;   // the reader's
};

}  // namespace zetplay
