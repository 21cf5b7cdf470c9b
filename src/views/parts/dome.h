#pragma once

#include <GLES2/gl2.h>

#include <functional>
#include <vector>

namespace zet::ZETShow {

/// One vertex: where it stands, and its texture coordinate, which most views leave as the two angles in radians.
struct DomePoint {
    float position[3];
    float texCoord[2];
};

/// Gives the vertex at angle `a` around the axis and `b` from the rim towards the pole, radians.
using DomeRule = std::function<DomePoint(double a, double b)>;

/// The shape that carries the picture: 134 columns of 34 cells, two triangles each, in client memory, no index array.
///
/// Column by column and in each from the rim inward. The last column and the last row run past the full and the
/// quarter circle by less than a cell. Drawing takes three calls: `enable`, what the view sends, `draw`.
struct Dome {
    /// Points the two attributes of the program in use at the arrays. Render thread.
    void enable(GLint positionLoc, GLint texCoordLoc) const;
    /// Draws, and leaves no attribute array enabled. Render thread.
    void draw(GLint positionLoc, GLint texCoordLoc) const;

    std::vector<float> _vertices;   // 3 a vertex
    std::vector<float> _texCoords;  // 2 a vertex
    int _vertexCount = 0;

    static constexpr float _radius = 6.0f;
    static constexpr float _angleSpan = 3.14159f;             // pi as the mesh uses it
    static constexpr float _angleStep = _angleSpan * 0.015f;  // angular size of a cell, radians
};

Dome makeDome(const DomeRule& rule);

/// A rule: the half sphere about the origin, rim in the plane z = 0 and pole at z = -6, with the angles as texture
/// coordinate. `a` = 0 lies at y = -6, a quarter circle at x = -6.
DomePoint onSphere(double a, double b);
/// The same, pressed to 0.97 of its depth.
DomePoint onFlattenedSphere(double a, double b);

}  // namespace zet::ZETShow
