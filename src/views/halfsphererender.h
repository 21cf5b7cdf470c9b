#pragma once

#include "render/matrix.h"
#include "render/render.h"
#include "views/halfspheremotion.h"
#include "views/halfspherescene.h"
#include "views/parts/camera.h"
#include "views/parts/dome.h"

namespace zet::ZETShow {

/// Mode 1, the half sphere: the fisheye picture as the inside of a bowl that floats in a dark scene.
class HalfSphereRender final : public Render {
public:
    HalfSphereRender(DisplayConfig* config, float touchScale, Display* display);

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
    void setOpeningFlight(bool on) override;
    void setSceneBackdrop(bool backdrop, bool stars) override;

private:
    void layOut(int surfaceWidth, int surfaceHeight);
    void drawBowl(const Frame& frame);

    // Fixed after `init`.
    Mesh _dome;
    bool _ready = false;  // the programs are built
    FrameProgram _nearProgram;

    HalfSphereMotion _motion;
    SurfaceSize _surface;
    MatrixState _sphereMatrix;
    HalfSphereScene _scene;
};

}  // namespace zet::ZETShow
