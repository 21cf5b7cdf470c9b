#pragma once

#include <memory>

#include "overlay/airectrender.h"
#include "overlay/imageoverlay.h"
#include "render/matrix.h"
#include "render/mesh.h"
#include "render/render.h"
#include "views/commonmotion.h"

namespace zet::ZETShow {

/// The flat view: the whole frame on one quad, fitted to the window with its aspect kept.
class CommonRender final : public Render {
public:
    CommonRender(DisplayConfig* config, RenderThread* thread, const std::shared_ptr<CommonMotion>& motion);

    int init(const ColorTransform& color) override;
    int render(int surfaceWidth, int surfaceHeight, const Frame& frame) override;

private:
    /// Settings that only change numbers of the motion.
    void observeNumbers(const std::shared_ptr<CommonMotion>& motion);
    /// Settings of what is drawn, which need GL or the view.
    void observeDrawing();
    // True asks for a redraw.
    bool setLensParam(const LensParam* lens);
    bool setFaceOption(int option);
    bool setOverlayImage(DisplayConfigUserData& delivery);
    void setQuad(float left, float bottom, float right, float top);
    static void rotateTexCoords(unsigned rotation, float* out, const float* in);

    void fitTo(int surfaceWidth, int surfaceHeight, int frameWidth, int frameHeight);
    /// Turns the quad's picture clockwise, if that or the picture has changed.
    void turnQuad(unsigned rotation);
    void lookStraight();
    void applyViewTransform();
    bool zoomIsInForce(const Frame& frame) const;
    void zoomToRect(const Frame& frame);
    void drawQuad(const Frame& frame);
    void drawInset(const Frame& frame, unsigned rotation);
    void drawImageOverlay(unsigned rotation);
    void drawFaces(const Frame& frame);

    CommonMotion& _motion;

    // The quad, in triangle-strip order. Render thread.
    static constexpr unsigned noRotation = 360;
    Mesh _quad;
    unsigned _quadRotation = noRotation;  // for which `_quad` was loaded
    float _quadTexCoords[8] = {};
    float _rotatedQuadTexCoords[8] = {};
    float _heightFactor = 1.0f;  // of the frame's height, before it is fitted

    // As of the last projection.
    MatrixState _matrixState;
    int _frameWidth = 0;  // after rotation and `_heightFactor`
    int _frameHeight = 0;

    // Made when first needed. Render thread.
    std::unique_ptr<AiRectRender> _aiRectRender;  // at the first frame with faces
    std::unique_ptr<ImageOverlay> _imageOverlay;  // goes first
    int _faceOption = FACE_BOX;                   // `FaceOption` bits; fixed once `_aiRectRender` is made

    FrameProgram _correctedProgram;
    bool _corrects = false;                  // it draws, not `_program`
    std::array<float, 9> _lensNumbers = {};  // k1 k2 k3 p1 p2 fx fy ox oy
};

}  // namespace zet::ZETShow
