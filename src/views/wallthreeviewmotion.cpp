#include "views/wallthreeviewmotion.h"

#include "views/parts/sidelook.h"

namespace zet::ZETShow {

namespace {

constexpr float nearPlane = 1.5f;
constexpr float farPlane = 25.0f;

}  // namespace

void WallThreeViewMotion::layoutPanes() {
    const int halfWidth = _size._lastWidth / 2;
    const int halfHeight = _size._lastHeight / 2;
    _paneRects[0] = {0, halfHeight + 1, halfWidth - 1, halfHeight - 1};
    _paneRects[1] = {0, 0, _size._lastWidth, halfHeight - 1};
    _paneRects[2] = {halfWidth + 1, halfHeight + 1, halfWidth - 1, halfHeight - 1};
    _aspect = static_cast<float>(_paneRects[0].width / _paneRects[0].height);
}

void WallThreeViewMotion::updatePaneCamera(int p, MatrixState& matrices) {
    if (p == 0) _paneMoveZ = sideShift(0.0f, _yaw[0]);
    _yaw[p] = p == 0 ? -viewLimit : viewLimit;
    setFrustumByAspect(matrices, _aspect, nearPlane, farPlane);
    lookAside(matrices, _paneMoveZ, 0.0f, _yaw[p]);
}

void WallThreeViewMotion::updatePanoramaCamera(MatrixState& matrices) {
    matrices.setFrustum(-0.9f, 0.9f, -0.9f, 0.9f, 1.0f, 30.0f);
    matrixLookAt(matrices._viewMatrix, 0, 0, 1, 0, 0, 0, 0, 1, 0);
    matrices.rotateView(90, 0, 0, 1);
}

}  // namespace zet::ZETShow
