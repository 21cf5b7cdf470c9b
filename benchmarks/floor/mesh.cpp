#include "floor/mesh.h"

#include <cmath>

namespace bench {

namespace {

constexpr double pi = 3.14159;  // as the views' meshes have it
constexpr double cell = pi * 0.015;
constexpr int columns = 134;
constexpr int rows = 34;
constexpr double radius = 6.0;

// `even` of a lens that falls evenly from the rim, the rest of one that falls as the sine.
DomeVertex onShape(double a, double b, double bulge, double shift, double stretch, double inner, double even) {
    const double evenly = 1.0 - 2.0 * (1.0 - inner) / pi * b;
    const double bySine = 1.0 - (1.0 - inner) * std::sin(b);
    const double r = -0.998 * (evenly * even + bySine * (1.0 - even));
    return {static_cast<float>(-radius * std::sin(a) * bulge), static_cast<float>(-radius * std::cos(a) * bulge),
            static_cast<float>(-radius * stretch * (shift + std::sin(b))), static_cast<float>(std::sin(a) * r),
            static_cast<float>(std::cos(a) * r)};
}

}  // namespace

Mesh quad(float halfWidth, float halfHeight, float s0, float t0, float s1, float t1) {
    return {{-halfWidth, -halfHeight, 0, s0, t0, halfWidth, -halfHeight, 0, s1, t0,
             -halfWidth, halfHeight,  0, s0, t1, halfWidth, halfHeight,  0, s1, t1},
            {0, 1, 2, 2, 1, 3}};
}

Mesh dome(DomeRule rule) {
    Mesh mesh;
    for (int column = 0; column <= columns; ++column) {
        for (int row = 0; row <= rows; ++row) {
            const DomeVertex vertex = rule(column * cell, row * cell);
            mesh.vertices.insert(mesh.vertices.end(), {vertex.x, vertex.y, vertex.z, vertex.s, vertex.t});
        }
    }
    for (int column = 0; column < columns; ++column) {
        for (int row = 0; row < rows; ++row) {
            const int corner = column * (rows + 1) + row;
            for (const int step : {0, rows + 1, 1, 1, rows + 1, rows + 2}) {
                mesh.indices.push_back(static_cast<std::uint16_t>(corner + step));
            }
        }
    }
    return mesh;
}

DomeVertex sphere(double a, double b) {
    return {static_cast<float>(-radius * std::sin(a) * std::cos(b)),
            static_cast<float>(-radius * std::cos(a) * std::cos(b)), static_cast<float>(-radius * std::sin(b)),
            static_cast<float>(a), static_cast<float>(b)};
}

DomeVertex pressedSphere(double a, double b) {
    DomeVertex vertex = sphere(a, b);
    vertex.z *= 0.97f;
    return vertex;
}

DomeVertex underPicture(double a, double b) {
    DomeVertex vertex = sphere(a, b);
    // Seen by a camera that has the dome turned by a half circle.
    vertex.s = static_cast<float>(std::cos(b) * std::sin(a));
    vertex.t = static_cast<float>(-1.6 * std::cos(b) * std::cos(a));
    return vertex;
}

DomeVertex drum(double a, double b) {
    return onShape(a, b, 1.0, -0.5, 1.062, 0.1, 0.4);
}

DomeVertex bowl(double a, double b) {
    DomeVertex vertex = onShape(a, b, std::cos(b), -0.35, 1.1, 0.0, 0.6);
    vertex.s = -vertex.s;
    return vertex;
}

}  // namespace bench
