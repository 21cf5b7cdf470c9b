#include "views/parts/camera.h"

namespace zet::ZETShow {

namespace {

constexpr int leastSide = 11;  // pixels

}  // namespace

bool SurfaceSize::changeTo(int width, int height) {
    if (_sized && width == _lastWidth && height == _lastHeight) return false;
    if (width == 0 || height == 0) return false;
    _sized = 0;
    if (width < leastSide || height < leastSide) return false;
    _lastWidth = width;
    _lastHeight = height;
    _sized = 1;
    return true;
}

void setFrustumByAspect(MatrixState& matrices, float aspect, float near, float far) {
    matrices.setFrustum(-aspect, aspect, -1.0f, 1.0f, near, far);
}

void lookAlongAxis(MatrixState& matrices, float eyeZ) {
    matrixLookAt(matrices._viewMatrix, 0, 0, eyeZ, 0, 0, -4, 0, 4, -4);
}

}  // namespace zet::ZETShow
