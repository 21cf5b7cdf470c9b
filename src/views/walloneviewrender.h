#pragma once

#include "render/render.h"
#include "views/parts/dome.h"
#include "views/parts/wallzoom.h"

namespace zet::ZETShow {

/// Mode 9: the lens circle of a camera on a wall, on a dome that a camera on its axis sees whole from far and may look
/// about in when near.
class WallOneViewRender final : public Render {
public:
    WallOneViewRender(DisplayConfig* config, float touchScale, Display* display);

    int init() override;
    int createProgram() override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

    int onTouchDown(float x, float y) override;
    int onPinch(float factor) override;
    int onDoubleTap(float x, float y) override;
    int onDrag(float x1, float y1, float x2, float y2) override;
    void setAutoRotate(bool enable, float speed) override;
    void onFling(float velocityX, float velocityY) override;

private:
    void draw(const Frame& frame);

    // Gestures and settings.
    WallZoom _zoom{wallOneZoom};

    // Fixed after `init`.
    Mesh _dome;
    bool _ready = false;

    MatrixState _matrixState;
};

}  // namespace zet::ZETShow
