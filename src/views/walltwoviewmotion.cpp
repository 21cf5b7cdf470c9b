#include "views/walltwoviewmotion.h"

#include <algorithm>
#include <cmath>

#include "views/parts/angles.h"
#include "views/parts/sidelook.h"

namespace zet::ZETShow {

namespace {

constexpr float overviewEyeZ = 9.2000008f;  // the rim of radius 6 is seen well inside the pane

constexpr float stepSize = 1.44f;            // degrees of the larger angle in one step of a movement
constexpr float farthest = 36000.0f;         // degrees: more than any finger asks for, and bounds the steps of a call
constexpr double dragSensitivity = 0.15;     // degrees a pixel
constexpr float dragPart = 0.2f;             // of that
constexpr float flingTurn = 3.0f * 0.1125f;  // degrees a frame, for a thousand pixels a second
constexpr float flingYaw = 1.2f;             // of that, in yaw
constexpr float aimSlack = 5.0f;             // degrees that an aim may lie beyond the diamond
constexpr float aimShrink = 0.91f;

// Moves a place along a side of the overview outward from the middle: `band` before the edge it already counts as the
// edge.
float stretchToEdges(float place, float length, float end, float band) {
    const float gain = length / (length - 2.0f * band);
    if (place < band) return 0.0f;
    if (place < length * 0.5f) return gain * place - gain * band;
    if (place < length - band) return (length - length * gain) * 0.5f + gain * place;
    return place > length - band && place < length ? end : place;
}

// Adds to an angle as long as it is within the limit. The other angle gives way, so that both stay in the diamond. A
// last step may lead beyond the limit: then `room` is negative, and both cases below can apply.
void addWithinDiamond(Relaxed<float>& angle, Relaxed<float>& other, float d) {
    if ((angle > viewLimit && d > 0.0f) || (angle < -viewLimit && d < 0.0f)) return;
    angle += d;
    const float room = viewLimit - std::fabs(angle);
    other.update([room](float value) {
        if (value >= 0.0f && value > room) value = room;
        if (value < 0.0f && -value > room) value = -room;
        return value;
    });
}

}  // namespace

void WallTwoViewMotion::updateDetailCamera(MatrixState& matrices) {
    const auto held = [](float angle) { return clampBothWays(angle, viewLimit); };
    const float pitch = _pitch.update(held);
    const float yaw = _yaw.update(held);
    lookAside(matrices, sideShift(pitch, yaw), pitch, yaw);
}

void WallTwoViewMotion::updateOverviewCamera(MatrixState& matrices) {
    lookAlongAxis(matrices, overviewEyeZ);
}

bool WallTwoViewMotion::touchDown(float x, float y) {
    if (x > 0.0f && y > 0.0f && isOnOverview(x, y)) aimView(x, y);
    return true;
}

bool WallTwoViewMotion::drag(float x1, float y1, float x2, float y2) {
    const bool onOverview = x2 >= 0.0f && y2 >= 0.0f && isOnOverview(x2, y2);
    const auto dx = static_cast<float>((static_cast<double>(x2) - x1) * dragSensitivity);
    const auto dy = static_cast<float>((static_cast<double>(y2) - y1) * dragSensitivity);
    const float part = onOverview ? dragPart : -dragPart;
    _dragSide = onOverview ? -1 : 1;
    moveView(dy * part, dx * part);
    return true;
}

void WallTwoViewMotion::fling(float velocityX, float velocityY) {
    const float turn = static_cast<float>(_dragSide) * flingTurn;
    moveView(0.0f, turn * velocityX * flingYaw / 1000.0f);
    moveView(turn * velocityY / 1000.0f, 0.0f);
}

bool WallTwoViewMotion::isOnOverview(float x, float y) const {
    return x < static_cast<float>(_size._lastWidth / 2) && y < static_cast<float>(_size._lastHeight);
}

void WallTwoViewMotion::aimView(float x, float y) {
    const int width = _size._lastWidth;
    const auto w = static_cast<float>(width);
    const auto h = static_cast<float>(_size._lastHeight);
    const float middleX = w * 0.25f;
    const float middleY = h * 0.5f;
    const float fromRight = static_cast<float>(width / 2) - x;
    const float fromBottom = h - y;

    // The middle of an edge of the overview aims at exactly that corner of the diamond.
    const bool atMiddleX = std::fabs(fromRight - middleX) < w / 200.0f;
    const bool atMiddleY = std::fabs(fromBottom - middleY) < h / 100.0f;
    if (atMiddleY && (fromRight < w / 200.0f || fromRight > w * 0.495f)) {
        _yaw = fromRight < middleX ? viewLimit : -viewLimit;
        _pitch = 0.0f;
        return;
    }
    if (atMiddleX && (fromBottom < h / 100.0f || fromBottom > h - h / 100.0f)) {
        _yaw = 0.0f;
        _pitch = fromBottom < middleY ? viewLimit : -viewLimit;
        return;
    }

    const float aimedX = stretchToEdges(fromRight, w * 0.5f, static_cast<float>(width / 2), w / 15.0f + w / 15.0f);
    const float aimedY = stretchToEdges(fromBottom, h, h, h / 15.0f * 0.75f);
    float yaw = (middleX - aimedX) * viewLimit / middleX;
    float pitch = (middleY - aimedY) * viewLimit / middleY;
    const bool shrinksOn = yaw > 0.0f && pitch >= 0.0f;
    while (std::fabs(yaw) + std::fabs(pitch) > viewLimit + aimSlack) {
        yaw *= aimShrink;
        pitch *= aimShrink;
        if (!shrinksOn) break;  // `addWithinDiamond` does the rest
    }
    moveView(pitch - _pitch, yaw - _yaw);
}

void WallTwoViewMotion::moveView(float dPitch, float dYaw) {
    const float pitch = clampBothWays(dPitch, farthest);
    const float yaw = clampBothWays(dYaw, farthest);
    const float n = std::max({std::fabs(pitch) / stepSize, std::fabs(yaw) / stepSize, 1.0f});
    // The count grows by the size of a step, not by 1: a large movement stops short of its end.
    float i = 0.0f;
    do {
        addWithinDiamond(_pitch, _yaw, pitch / n);
        addWithinDiamond(_yaw, _pitch, yaw / n);
        i += stepSize;
    } while (n > i);
}

}  // namespace zet::ZETShow
