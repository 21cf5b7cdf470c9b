#pragma once

#include "render/render.h"
#include "views/parts/dome.h"
#include "views/walloneview180motion.h"

namespace zet::ZETShow {

/// Mode 10: the frame of a camera on a wall, flat from far and bent into a dome around the camera when near. It takes
/// the lens region as it is, not squared.
class WallOneView180Render final : public Render {
public:
    WallOneView180Render(DisplayConfig* config, float touchScale, Display* display);

    int init() override;
    int createProgram() override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

    int onTouchDown(float x, float y) override;
    int onTouchUp(float x, float y) override;
    int onPinch(float factor) override;
    int onDoubleTap(float x, float y) override;
    int onDrag(float x1, float y1, float x2, float y2) override;
    void setAutoRotate(bool enable, float speed) override;
    void onFling(float velocityX, float velocityY) override;

private:
    void draw(const Frame& frame);

    // Gestures and settings.
    WallOneView180Motion _motion;

    // Fixed after `init`.
    Mesh _dome;
    bool _ready = false;

    MatrixState _matrixState;
};

}  // namespace zet::ZETShow
