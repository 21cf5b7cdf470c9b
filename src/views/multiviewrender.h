#pragma once

#include "render/render.h"
#include "views/multiviewmotion.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// Mode 3: four cameras inside the dome, each with a pane of its own in a grid of two by two.
class MultiViewRender final : public Render {
public:
    MultiViewRender(DisplayConfig* config, float touchScale, Display* display);

    int init() override;
    int createProgram() override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

    int onTouchDown(float x, float y) override;
    int onTouchUp(float x, float y) override;
    int onDoubleTap(float x, float y) override;
    int onDrag(float x1, float y1, float x2, float y2) override;
    void setAutoRotate(bool enable, float speed) override;
    void onFling(float velocityX, float velocityY) override;

private:
    void layOut();
    void drawPanes(const Frame& frame);
    void drawPane(int p, const Viewport& rect);

    // Gestures and settings.
    MultiViewMotion _motion;

    // Fixed after `init`.
    Mesh _dome;
    bool _ready = false;

    MatrixState _paneMatrices[MultiViewMotion::paneCount];
};

}  // namespace zet::ZETShow
