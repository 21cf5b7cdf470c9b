#include "views/parts/dome.h"

#include <algorithm>
#include <cmath>

namespace zet::ZETShow {

namespace {

constexpr float flattening = 0.97f;

// How often a loop from 0 in steps of a cell runs below `span`.
constexpr int cellsBelow(float span) {
    return static_cast<int>(span / Dome::_angleStep) + 1;
}

constexpr std::size_t columns = cellsBelow(2 * Dome::_angleSpan);
constexpr std::size_t rows = cellsBelow(Dome::_angleSpan / 2);

}  // namespace

Dome makeDome(const DomeRule& rule) {
    constexpr double step = Dome::_angleStep;
    Dome dome;
    dome._vertices.reserve(columns * rows * 6 * 3);
    dome._texCoords.reserve(columns * rows * 6 * 2);
    const auto append = [&dome, &rule](double a, double b) {
        const DomePoint point = rule(a, b);
        dome._vertices.insert(dome._vertices.end(), std::begin(point.position), std::end(point.position));
        dome._texCoords.insert(dome._texCoords.end(), std::begin(point.texCoord), std::end(point.texCoord));
    };
    // The angles are sums of steps, in double: the vertices of neighbouring cells fall on each other exactly.
    for (double a = 0.0; a < 2.0 * Dome::_angleSpan; a += step) {
        for (double b = 0.0; b < 0.5 * Dome::_angleSpan; b += step) {
            append(a, b);
            append(a + step, b);
            append(a, b + step);
            append(a, b + step);
            append(a + step, b);
            append(a + step, b + step);
        }
    }
    dome._vertexCount = static_cast<int>(dome._vertices.size() / 3);
    return dome;
}

DomePoint onSphere(double a, double b) {
    const auto x = static_cast<float>(std::sin(a) * std::cos(b));
    const auto y = static_cast<float>(std::cos(a) * std::cos(b));
    const auto z = static_cast<float>(std::sin(b));
    return {{x * -Dome::_radius, y * -Dome::_radius, z * -Dome::_radius},
            {static_cast<float>(a), static_cast<float>(b)}};
}

DomePoint onFlattenedSphere(double a, double b) {
    DomePoint point = onSphere(a, b);
    point.position[2] *= flattening;
    return point;
}

void Dome::enable(GLint positionLoc, GLint texCoordLoc) const {
    const auto position = static_cast<GLuint>(positionLoc);
    const auto texCoord = static_cast<GLuint>(texCoordLoc);
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 3, GL_FLOAT, GL_FALSE, 0, _vertices.data());
    glEnableVertexAttribArray(texCoord);
    glVertexAttribPointer(texCoord, 2, GL_FLOAT, GL_FALSE, 0, _texCoords.data());
}

void Dome::draw(GLint positionLoc, GLint texCoordLoc) const {
    glDrawArrays(GL_TRIANGLES, 0, _vertexCount);
    glDisableVertexAttribArray(static_cast<GLuint>(texCoordLoc));
    glDisableVertexAttribArray(static_cast<GLuint>(positionLoc));
}

}  // namespace zet::ZETShow
