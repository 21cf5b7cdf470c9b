#include "views/multiviewmapmotion.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "views/parts/angles.h"

namespace zet::ZETShow {

namespace {

// Pitch in degrees, moves in the dome's units.
constexpr float nearPitch = -45.560596f;
constexpr float nearMoveY = 1.8790853f;
constexpr float nearMoveZ = 1.3989465f;
constexpr float lowPitch = -65.900597f;
constexpr float lowMoveY = 2.6181979f;
constexpr float lowMoveZ = 0.68567199f;
constexpr float detailEyeZ = 2.0f;
constexpr float mapEyeZ = 6.2f;  // the rim of radius 6 is seen a little inside the pane

constexpr float poleStep = 10.0f;  // degrees of pitch for a unit of travel, from the near pose to the pole
constexpr float lowStep = 13.5f;   // the same towards the low pose
constexpr float leastTravel = (lowPitch - nearPitch) / lowStep;
constexpr float greatestTravel = nearPitch / -poleStep;

constexpr float springStep = 1.0f;              // degrees a frame
constexpr float autoRotateStep = 0.043269236f;  // degrees at speed 1
constexpr float dragSensitivity = 0.1125f;      // degrees a pixel
constexpr float travelPart = 0.1f;              // of that, in units of travel
constexpr float flingTurn = 5.0625f;            // degrees a frame, for a thousand pixels a second
constexpr float mapReach = 1.8f;                // above 1: the near pose is reached before the map's corner
constexpr float greatestYaw = 36000.0f;         // degrees
constexpr double degrees = 57.295780490442965;  // in a radian

}  // namespace

void MultiViewMapMotion::step() {
    if (_autoRotate) turn(_autoRotateSpeed * autoRotateStep);
    if (!stepSpring()) applyRestRule();
}

void MultiViewMapMotion::updateDetailCamera(MatrixState& matrices) {
    lookAlongAxis(matrices, detailEyeZ);
    matrices.rotateView(180, 0, 0, 1);
    matrices.rotateView(_pitch, 1, 0, 0);
    matrixTranslate(matrices._viewMatrix, 0, _moveY, _moveZ);
    matrices.rotateView(dropWholeTurns(_yaw) + 180.0f, 0, 0, 1);
}

void MultiViewMapMotion::updateMapCamera(MatrixState& matrices) {
    lookAlongAxis(matrices, mapEyeZ);
}

bool MultiViewMapMotion::stepSpring() {
    const bool fingerUp = _fingerUp;
    const bool springs = fingerUp && _pitch < nearPitch;
    if (springs) {
        _pitch = std::min(_pitch + springStep, nearPitch);
        followLowPath();
        if (_pitch >= nearPitch) {
            _tiltSeen = true;
            _travel = 0.0f;
        }
    } else if (!fingerUp && _wasFingerUp && _pitch <= nearPitch) {
        // A finger has caught the springing view, which goes on from here.
        _tiltSeen = true;
        _travel = (_pitch - nearPitch) / lowStep;
    }
    _wasFingerUp = fingerUp;
    return springs;
}

void MultiViewMapMotion::applyRestRule() {
    const float least = _tiltSeen && !_fingerUp ? leastTravel : 0.0f;
    const float travel = _travel.update([least](float value) { return std::clamp(value, least, greatestTravel); });
    if (travel >= 0.0f) {
        _pitch = travel * poleStep + nearPitch;
        _moveY = (_pitch - nearPitch) / nearPitch * nearMoveY + nearMoveY;
        _moveZ = nearMoveZ;
    } else {
        _pitch = std::clamp(travel * lowStep + nearPitch, lowPitch, 0.0f);
        followLowPath();
    }
}

void MultiViewMapMotion::followLowPath() {
    constexpr float slack = 0.01f;
    if (_pitch < lowPitch - slack || _pitch > nearPitch + slack) return;
    constexpr float span = nearPitch - lowPitch;
    _moveY = (nearMoveY - lowMoveY) / span * (_pitch - lowPitch) + lowMoveY;
    _moveZ = (nearMoveZ - lowMoveZ) / span * (_pitch - lowPitch) + lowMoveZ;
}

bool MultiViewMapMotion::touchDown(float x, float y) {
    // The surface is split in halves: each margin belongs to the pane beside it.
    const auto width = static_cast<float>(_size._lastWidth);
    const auto half = static_cast<float>(_size._lastWidth / 2);
    const auto height = static_cast<float>(_size._lastHeight);
    if (x > 0.0f && x < half && y > 0.0f && y < height) {
        aimFromMap(x, y);
        _activePane = 1;
    } else if (x >= half && x <= width && y >= 0.0f && y <= height) {
        _fingerUp = false;
        _activePane = 0;
    }
    return true;
}

bool MultiViewMapMotion::touchUp(float, float) {
    _fingerUp = true;
    return true;
}

bool MultiViewMapMotion::drag(float x1, float y1, float x2, float y2) {
    if (_activePane == 1) {
        aimFromMap(x2, y2);
    } else {
        addHeld(_travel, -(y2 - y1) * dragSensitivity * travelPart);
        turn((x2 - x1) * dragSensitivity);
    }
    return true;
}

void MultiViewMapMotion::aimFromMap(float x, float y) {
    const std::int64_t width = _size._lastWidth;
    const std::int64_t height = _size._lastHeight;
    // Measured from the middle of the left half, mirrored.
    const float dx = static_cast<float>(width / 2) - x - static_cast<float>(width / 4);
    const float dy = y - static_cast<float>(height / 2);
    if (dx != 0.0f || dy != 0.0f) {  // the middle itself has no direction
        const double q = std::atan(dy / dx) * degrees;
        _yaw = static_cast<float>(q + (dx > 0.0f ? 90.0 : 270.0));
    }
    const auto corner = std::sqrt(static_cast<float>(height * height / 4 + width * width / 16));
    const float distance = std::sqrt(dx * dx + dy * dy);
    _travel = std::max((corner - distance * mapReach) * greatestTravel / corner, 0.0f);
}

void MultiViewMapMotion::setAutoRotate(bool on, float speed) {
    _autoRotate = on;
    _autoRotateSpeed = speed;
}

void MultiViewMapMotion::fling(float velocityX, float) {
    turn(velocityX * flingTurn / 1000.0f);
}

void MultiViewMapMotion::turn(float angle) {
    _yaw.update([angle](float before) {
        const float yaw = heldSum(before, angle);
        // After days of turning a float would be too large to add a frame's step to. Whole turns are invisible.
        return std::fabs(yaw) > greatestYaw ? dropWholeTurns(yaw) : yaw;
    });
}

}  // namespace zet::ZETShow
