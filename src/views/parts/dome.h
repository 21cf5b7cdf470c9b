#pragma once

#include <functional>

#include "render/mesh.h"

namespace zet::ZETShow {

/// The shape that carries the picture: 134 columns of 34 cells, two triangles each, column by column and in each from
/// the rim inward. The last column and the last row run past the full and the quarter circle by less than a cell.
struct Dome {
    static constexpr float _radius = 6.0f;
    static constexpr float _angleSpan = 3.14159f;             // pi as the mesh uses it
    static constexpr float _angleStep = _angleSpan * 0.015f;  // angular size of a cell, radians
};

/// Gives the vertex at angle `a` around the axis and `b` from the rim towards the pole, radians. Most views leave the
/// two angles as its texture coordinate.
using DomeRule = std::function<MeshVertex(double a, double b)>;

MeshArrays makeDome(const DomeRule& rule);

/// A rule: the half sphere about the origin, rim in the plane z = 0 and pole at z = -6, with the angles as texture
/// coordinate. `a` = 0 lies at y = -6, a quarter circle at x = -6.
MeshVertex onSphere(double a, double b);
/// The same, pressed to 0.97 of its depth.
MeshVertex onFlattenedSphere(double a, double b);

}  // namespace zet::ZETShow
