#include "synthetic/syntheticfigure.h"

#include <numbers>

namespace zetplay {

namespace {

constexpr Colour skin{0.87f, 0.66f, 0.52f};
constexpr Colour hair{0.25f, 0.16f, 0.10f};
constexpr Colour trousers{0.20f, 0.24f, 0.34f};

/// The walker's ellipse.
struct Path {
    double middleX, middleY, radiusX, radiusY;  ///< metres
    double secondsPerRound;
};

constexpr Path roundTheCompass{0, 0, 1.75, 1.75, 14};
constexpr Path beforeTheCamera{0, 0.4, 1.7, 0.6, 11};
constexpr double stepsPerRound = 15;

}  // namespace

Figure person(Vec3 feet, float heading, float stride, Colour shirt) {
    const Vec3 ahead{std::cos(heading), std::sin(heading), 0};
    const Vec3 left{-ahead.y, ahead.x, 0};
    const auto at = [&](float forward, float toLeft, float height) {
        return feet + ahead * forward + left * toLeft + Vec3{0, 0, height};
    };
    const float swing = 0.3f * stride;
    return {feet,
            {{{at(0, 0.1f, 0.85f), at(swing, 0.1f, 0.08f), 0.09f, trousers},
              {at(0, -0.1f, 0.85f), at(-swing, -0.1f, 0.08f), 0.09f, trousers},
              {at(0, 0.24f, 1.38f), at(-swing, 0.3f, 0.85f), 0.06f, skin},
              {at(0, -0.24f, 1.38f), at(swing, -0.3f, 0.85f), 0.06f, skin},
              {at(0, 0, 0.95f), at(0, 0, 1.32f), 0.17f, shirt},
              {at(0, 0.17f, 1.38f), at(0, -0.17f, 1.38f), 0.1f, shirt},
              {at(0.02f, 0, 1.66f), at(0.02f, 0, 1.62f), 0.125f, skin},
              {at(-0.025f, 0, 1.70f), at(-0.025f, 0, 1.69f), 0.13f, hair}}}};
}

Figure walker(Mount mount, double seconds) {
    const Path& path = mount == Mount::ceiling ? roundTheCompass : beforeTheCamera;
    const double round = 2 * std::numbers::pi * seconds / path.secondsPerRound;
    const Vec3 feet{static_cast<float>(path.middleX + path.radiusX * std::sin(round)),
                    static_cast<float>(path.middleY + path.radiusY * std::cos(round)), 0};
    const double heading = std::atan2(-path.radiusY * std::sin(round), path.radiusX * std::cos(round));
    return person(feet, static_cast<float>(heading), static_cast<float>(std::sin(round * stepsPerRound / 2)),
                  {0.90f, 0.45f, 0.10f});
}

std::vector<Figure> bystanders(Mount mount) {
    if (mount == Mount::ceiling) return {person({-1.9f, -1.7f, 0}, 0.7f, 0, {0.55f, 0.30f, 0.62f})};
    return {person({-2.5f, -0.7f, 0}, 0, 0, {0.20f, 0.55f, 0.40f}),
            person({-1.6f, 2.0f, 0}, -1.4f, 0, {0.55f, 0.30f, 0.62f}),
            person({2.6f, -0.3f, 0}, 3, 0, {0.75f, 0.22f, 0.25f})};
}

}  // namespace zetplay
