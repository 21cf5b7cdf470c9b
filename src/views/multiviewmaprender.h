#pragma once

#include "render/render.h"
#include "views/multiviewmapmotion.h"
#include "views/parts/detailarea.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// Mode 4: the whole dome as a map on the left, a look along its wall on the right, and the part that the right shows
/// lit up on the left.
class MultiViewMapRender final : public Render {
public:
    MultiViewMapRender(DisplayConfig* config, float touchScale, Display* display);

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

    // Gestures and settings.
    MultiViewMapMotion _motion;

    // Fixed after `init`.
    bool _ready = false;

    // As of the last layout and the last frame.
    DetailArea _detailArea;
    MatrixState _detailMatrices;
    MatrixState _mapMatrices;
};

}  // namespace zet::ZETShow
