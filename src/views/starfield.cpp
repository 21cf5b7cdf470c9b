#include "views/starfield.h"

#include <cmath>
#include <cstdlib>

namespace zet::ZETShow {

namespace {

constexpr int chances = 2001;  // values of a random part of a whole, both its ends included
constexpr double wholeTurn = 6.283185307179586;
constexpr float lightStep = 0.005f;  // a draw
constexpr float greatestLight = 1.8f;
constexpr float leastLight = 0.2f;
constexpr float shiftLength = 0.03f;  // scene units
constexpr int starsPerShift = 5;      // one of so many moves

// Back instead of forth where that would leave the ring. The bounds are positive, so a negative place always counts as
// one outside and goes back.
float shifted(float place, float shift) {
    const float end = place + shift;
    return end > StarField::_ringMax || end < StarField::_ringMin ? place - shift : end;
}

}  // namespace

StarField::StarField() : _points(3 * _pointCount), _pointsShifted(3 * _pointCount) {
    place();
}

void StarField::place() {
    for (std::size_t i = 0; i < groupCount; ++i) {
        _pointLight[i] = static_cast<float>(std::rand() % chances / (chances - 1.0));
        _pointLightRising[i] = i % 2 == 0;
    }
    const auto radius = [] { return std::rand() % (_ringMax - _ringMin + 1) + _ringMin; };
    for (std::size_t i = 0; i < _points.size(); i += 3) {
        const double angle = std::rand() % chances * wholeTurn / (chances - 1.0);
        _points[i] = static_cast<float>(std::cos(angle) * radius());
        _points[i + 1] = static_cast<float>(std::sin(angle) * radius());
        _points[i + 2] = depth;
    }
    _pointsShifted = _points;
    _pointPtr = _points.data();
}

void StarField::shift(int count) {
    static constexpr float directions[4][2] = {
        {shiftLength, 0}, {0, shiftLength}, {-shiftLength, 0}, {0, -shiftLength}};
    for (int n = count / starsPerShift; n > 0; --n) {
        const std::size_t i = 3 * static_cast<std::size_t>(std::rand() % count);
        const float* const direction = directions[std::rand() % 4];
        _pointsShifted[i] = shifted(_points[i], direction[0]);
        _pointsShifted[i + 1] = shifted(_points[i + 1], direction[1]);
    }
    _pointPtr = _pointsShifted.data();
}

float StarField::stepLight(int group) {
    float& light = _pointLight[static_cast<std::size_t>(group)];
    bool& rising = _pointLightRising[static_cast<std::size_t>(group)];
    if (light >= greatestLight) rising = false;
    if (light <= leastLight) rising = true;
    light += rising ? lightStep : -lightStep;
    return light;
}

}  // namespace zet::ZETShow
