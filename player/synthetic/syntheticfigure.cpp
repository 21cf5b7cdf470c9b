#include "synthetic/syntheticfigure.h"

#include <numbers>

namespace zetplay {

namespace {

constexpr Colour SKIN{0.87F, 0.66F, 0.52F};
constexpr Colour HAIR{0.25F, 0.16F, 0.10F};
constexpr Colour TROUSERS{0.20F, 0.24F, 0.34F};

/// The walker's ellipse.
struct Path {
    double middleX, middleY, radiusX, radiusY;  ///< metres
    double secondsPerRound;
};

constexpr Path ROUND_THE_COMPASS{0, 0, 1.75, 1.75, 14};
constexpr Path BEFORE_THE_CAMERA{0, 0.4, 1.7, 0.6, 11};
constexpr double STEPS_PER_ROUND = 15;

}  // namespace

Figure person(Vec3 feet, float heading, float stride, Colour shirt) {
    const Vec3 ahead{std::cos(heading), std::sin(heading), 0};
    const Vec3 left{-ahead.y, ahead.x, 0};
    const auto at = [&](float forward, float toLeft, float height) {
        return feet + ahead * forward + left * toLeft + Vec3{0, 0, height};
    };
    const float swing = 0.3F * stride;
    return {feet,
            {{{at(0, 0.1F, 0.85F), at(swing, 0.1F, 0.08F), 0.09F, TROUSERS},
              {at(0, -0.1F, 0.85F), at(-swing, -0.1F, 0.08F), 0.09F, TROUSERS},
              {at(0, 0.24F, 1.38F), at(-swing, 0.3F, 0.85F), 0.06F, SKIN},
              {at(0, -0.24F, 1.38F), at(swing, -0.3F, 0.85F), 0.06F, SKIN},
              {at(0, 0, 0.95F), at(0, 0, 1.32F), 0.17F, shirt},
              {at(0, 0.17F, 1.38F), at(0, -0.17F, 1.38F), 0.1F, shirt},
              {at(0.02F, 0, 1.66F), at(0.02F, 0, 1.62F), 0.125F, SKIN},
              {at(-0.025F, 0, 1.70F), at(-0.025F, 0, 1.69F), 0.13F, HAIR}}}};
}

Figure walker(Mount mount, double seconds) {
    const Path& path = mount == Mount::ceiling ? ROUND_THE_COMPASS : BEFORE_THE_CAMERA;
    const double round = 2 * std::numbers::pi * seconds / path.secondsPerRound;
    const Vec3 feet{static_cast<float>(path.middleX + path.radiusX * std::sin(round)),
                    static_cast<float>(path.middleY + path.radiusY * std::cos(round)), 0};
    const double heading = std::atan2(-path.radiusY * std::sin(round), path.radiusX * std::cos(round));
    return person(feet, static_cast<float>(heading), static_cast<float>(std::sin(round * STEPS_PER_ROUND / 2)),
                  {0.90F, 0.45F, 0.10F});
}

std::vector<Figure> bystanders(Mount mount) {
    if (mount == Mount::ceiling) return {person({-1.9F, -1.7F, 0}, 0.7F, 0, {0.55F, 0.30F, 0.62F})};
    return {person({-2.5F, -0.7F, 0}, 0, 0, {0.20F, 0.55F, 0.40F}),
            person({-1.6F, 2.0F, 0}, -1.4F, 0, {0.55F, 0.30F, 0.62F}),
            person({2.6F, -0.3F, 0}, 3, 0, {0.75F, 0.22F, 0.25F})};
}

}  // namespace zetplay
