#pragma once

#include <array>
#include <vector>

namespace zet::ZETShow {

/// Points round the half sphere and behind it, in groups whose brightness goes up and down. Each group draws a
/// prefix of the array. Numbers only; chance comes from the runtime's `rand`, never seeded here. Render thread.
struct StarField {
    static constexpr int _pointCount = 680;
    static constexpr int groupCount = 10;

    StarField();

    /// New places and a new brightness for every group.
    void place();
    /// Moves some of the first `count` stars by a little from the places where they rest, and shows them there.
    void shift(int count);
    /// One draw of a group: its brightness, which stays within about 0.2 to 1.8.
    float stepLight(int group);

    std::vector<float> _points;         // 3 a star: where they rest
    std::vector<float> _pointsShifted;  // 3 a star: with the latest shifts
    const float* _pointPtr = nullptr;   // the one of the two that is drawn
    std::array<float, groupCount> _pointLight = {};
    std::array<bool, groupCount> _pointLightRising = {};

    // Bounds of the two radii of a star, scene units; the stars fill a ring that is nearly a square.
    static constexpr int _ringMin = 9;
    static constexpr int _ringMax = 24;
    static constexpr float depth = -7.5f;  // z of all stars
};

}  // namespace zet::ZETShow
