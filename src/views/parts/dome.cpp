#include "views/parts/dome.h"

#include <cmath>

namespace zet::ZETShow {

namespace {

constexpr float flattening = 0.97f;

// How often a loop from 0 in steps of a cell runs below `span`.
constexpr int cellsBelow(float span) {
    return static_cast<int>(span / Dome::_angleStep) + 1;
}

constexpr int columns = cellsBelow(2 * Dome::_angleSpan);
constexpr int rows = cellsBelow(Dome::_angleSpan / 2);
constexpr int vertexRows = rows + 1;  // in a column of vertices

}  // namespace

MeshArrays makeDome(const DomeRule& rule) {
    MeshArrays dome;
    dome.vertices.reserve((columns + 1) * vertexRows);
    // The angles are sums of steps, in double.
    double a = 0.0;
    for (int column = 0; column <= columns; ++column, a += Dome::_angleStep) {
        double b = 0.0;
        for (int row = 0; row <= rows; ++row, b += Dome::_angleStep) dome.vertices.push_back(rule(a, b));
    }
    dome.indices.reserve(columns * rows * 6);
    for (int column = 0; column < columns; ++column) {
        for (int row = 0; row < rows; ++row) {
            const int here = column * vertexRows + row;
            const int beside = here + vertexRows;
            for (const int corner : {here, beside, here + 1, here + 1, beside, beside + 1}) {
                dome.indices.push_back(static_cast<GLushort>(corner));
            }
        }
    }
    return dome;
}

MeshVertex onSphere(double a, double b) {
    const auto x = static_cast<float>(std::sin(a) * std::cos(b));
    const auto y = static_cast<float>(std::cos(a) * std::cos(b));
    const auto z = static_cast<float>(std::sin(b));
    return {{x * -Dome::_radius, y * -Dome::_radius, z * -Dome::_radius},
            {static_cast<float>(a), static_cast<float>(b)}};
}

MeshVertex onFlattenedSphere(double a, double b) {
    MeshVertex point = onSphere(a, b);
    point.position[2] *= flattening;
    return point;
}

}  // namespace zet::ZETShow
