#pragma once

#include <array>
#include <vector>

#include "media/source.h"
#include "vec3.h"

namespace zetplay {

/// All points within `radius` of the line from `from` to `to`.
struct Capsule {
    Vec3 from;
    Vec3 to;
    float radius = 0;
    Colour colour;
};

/// A person made of capsules.
struct Figure {
    Vec3 feet;
    std::array<Capsule, 8> parts;
};

/// A person at a place: `heading` in radians from east towards north; `stride` moves arms and legs, 0 for standing.
Figure person(Vec3 feet, float heading, float stride, Colour shirt);

/// The person who walks through the room, `seconds` after the start.
Figure walker(Mount mount, double seconds);

/// The people who don't move.
std::vector<Figure> bystanders(Mount mount);

}  // namespace zetplay
