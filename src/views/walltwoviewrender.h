#pragma once

#include "render/render.h"
#include "views/parts/detailarea.h"
#include "views/parts/dome.h"
#include "views/walltwoviewmotion.h"

namespace zet::ZETShow {

/// Mode 8: the whole picture of a wall-mounted lens as an overview on the left, a camera that turns on the right, and
/// the part that the right shows lit up on the left. Nothing moves by itself here.
class WallTwoViewRender final : public Render {
public:
    WallTwoViewRender(DisplayConfig* config, float touchScale, Display* display);

    int init() override;
    int createProgram() override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

    int onTouchDown(float x, float y) override;
    int onDrag(float x1, float y1, float x2, float y2) override;
    void onFling(float velocityX, float velocityY) override;

private:
    void layOut();
    void drawPanes(const Frame& frame);

    // Gestures.
    WallTwoViewMotion _motion;

    // Fixed after `init`.
    bool _ready = false;

    // As of the last layout and the last frame.
    DetailArea _detailArea;
    MatrixState _detailMatrices;
    MatrixState _mapMatrices;
};

}  // namespace zet::ZETShow
