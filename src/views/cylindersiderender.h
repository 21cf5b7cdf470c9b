#pragma once

#include "render/matrix.h"
#include "render/mesh.h"
#include "render/render.h"
#include "views/cylindersidemotion.h"
#include "views/parts/camera.h"

namespace zet::ZETShow {

/// Mode 2, the panorama: the lens circle unrolled into one flat strip, its rim at the top.
class CylinderSideRender final : public Render {
public:
    CylinderSideRender(DisplayConfig* config, float touchScale, Display* display);

    /// Always 0: without a program the view shows the clear colour.
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
    CylinderSideMotion _motion;

    // As of the last projection.
    SurfaceSize _size;
    MatrixState _matrix;

    // Fixed after `init`.
    Mesh _strip;
};

}  // namespace zet::ZETShow
