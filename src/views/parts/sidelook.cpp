#include "views/parts/sidelook.h"

#include <cmath>

#include "views/parts/camera.h"

namespace zet::ZETShow {

namespace {

constexpr float eyeZ = 2.0f;
constexpr float moveZMax = 1.0486f;
constexpr float onAxis = 0.5f;  // degrees: a turn up to here beside an axis counts as on it

}  // namespace

float sideShift(float pitch, float yaw) {
    const float k = std::sqrt(pitch * pitch + yaw * yaw) / viewLimit;
    float c = 1.0f;
    if (std::fabs(yaw) > onAxis && std::fabs(pitch) > onAxis) {
        const float q = std::fabs(pitch / yaw);
        c = 1.0f - (q <= 1.0f ? q : 1.0f / q);
    }
    return moveZMax * k * c;
}

void lookAside(MatrixState& matrices, float moveZ, float pitch, float yaw) {
    lookAlongAxis(matrices, eyeZ);
    matrixTranslate(matrices._viewMatrix, 0, 0, moveZ);
    matrices.rotateView(-pitch, 1, 0, 0);
    matrices.rotateView(-yaw, 0, 1, 0);
}

}  // namespace zet::ZETShow
