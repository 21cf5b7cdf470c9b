#pragma once

#include "config/relaxed.h"
#include "views/parts/wallzoom.h"

namespace zet::ZETShow {

/// The camera of the wall view that begins flat, and the spring that takes it back towards the middle where no finger
/// holds it. Gestures and frames change its numbers, `WallOneView180Render` draws them.
struct WallOneView180Motion {
    /// A finger on the surface holds the view. Setter's thread.
    void touchDown(float x, float y);
    /// Setter's thread.
    void touchUp() { _fingerUp = true; }
    /// One frame of the spring and of all else that moves. Render thread.
    void step();

    WallZoom _zoom{wallOne180Zoom};
    Relaxed<bool> _fingerUp = true;  // no finger is on the surface

private:
    void stepSpring();
};

}  // namespace zet::ZETShow
