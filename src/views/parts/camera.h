#pragma once

#include "config/relaxed.h"
#include "render/matrix.h"
#include "render/viewport.h"

namespace zet::ZETShow {

/// The surface size for which a view is laid out.
struct SurfaceSize {
    /// Takes the surface's size before a draw; true if the view is to lay itself out for it. A side of 0 changes
    /// nothing; after a side of 1 to 10 pixels there is no layout any more. Render thread.
    bool changeTo(int width, int height);
    float aspect() const { return static_cast<float>(_lastWidth) / static_cast<float>(_lastHeight); }

    // Written by frames, read by gestures too. 0 until the first layout.
    Relaxed<int> _lastWidth = 0;
    Relaxed<int> _lastHeight = 0;
    Relaxed<int> _sized = 0;  // there is a layout
};

/// The frustum of half height 1 and half width `aspect` at the near plane.
void setFrustumByAspect(MatrixState& matrices, float aspect, float near, float far);

/// The camera on the dome's axis at `eyeZ`, which is above -4, looking at its pole with y upward.
void lookAlongAxis(MatrixState& matrices, float eyeZ);

}  // namespace zet::ZETShow
