#pragma once

#include <memory>
#include <string>
#include <vector>

#include "worker/picture.h"

namespace bench {

/// What a worker shows.
struct Scene {
    int view = 0;
    Size frame{1920, 1080};
    Size window{1280, 720};
    int displays = 1;  // in one process, each with a window of its own
    int faces = 0;     // on each frame, with box and three lines of text
};

/// Somebody who draws pictures into windows: the module, or a floor.
class Painter {
public:
    virtual ~Painter() = default;
    /// Draws the picture in all windows. It may reach the screen only after this returns.
    virtual void show(const Picture& picture) = 0;
    /// How many draws have reached the screen so far, in all windows.
    virtual long drawn() const = 0;
    /// The graphics driver; empty where the painter doesn't ask for it.
    virtual std::string about() const { return {}; }
};

/// Makes this worker's painter. It draws into one window for each display of the scene.
std::unique_ptr<Painter> makePainter(const Scene& scene, const std::vector<std::unique_ptr<XWindow>>& windows);

}  // namespace bench
