#pragma once

#include "config/relaxed.h"
#include "views/parts/wallzoom.h"

namespace zet::ZETShow {

/// The camera of the wall view that begins flat, and the spring that takes it back towards the middle when no finger
/// holds it. Gestures and frames change its numbers, `WallOneView180Render` draws them.
struct WallOneView180Motion final : WallZoom {
    WallOneView180Motion() : WallZoom(wallOne180Zoom) {}

    /// A finger on the surface holds the view. Setter's thread.
    bool touchDown(float x, float y) override;
    bool touchUp(float x, float y) override;  // Setter's thread.
    /// One frame of the spring and of `WallZoom`. Render thread.
    void step() override;

    Relaxed<bool> _fingerUp = true;  // no finger is on the surface

private:
    void stepSpring();
};

}  // namespace zet::ZETShow
