#pragma once

#include "synthetic/syntheticroom.h"
#include "vec3.h"

namespace zetplay {

/// An ideal equidistant lens of 180 degrees: a ray that leaves the axis by the angle theta meets the picture at the
/// radius f * theta. The circle of theta = 90 degrees is centred and touches the nearer pair of the picture's edges.
/// Picture coordinates are in pixels from the top left corner, y downward; the first pixel's centre is (0.5, 0.5).
class FisheyeLens {
public:
    FisheyeLens(int width, int height, const CameraPose& pose)
        : _pose(pose),
          _width(width),
          _height(height),
          _centreX(static_cast<float>(width) / 2),
          _centreY(static_cast<float>(height) / 2),
          _radius(static_cast<float>(width < height ? width : height) / 2) {}

    /// The direction seen at the point, a unit vector; false outside the circle, where there is none.
    bool look(float x, float y, Vec3& direction) const {
        const float right = (x - _centreX) / _radius;
        const float up = (_centreY - y) / _radius;
        const float square = right * right + up * up;
        if (square > 1) return false;
        const float thetaSquare = square * halfPi * halfPi;
        const float cosine = series(thetaSquare, 14);
        const float sineByTheta = series(thetaSquare, 13);
        direction = _pose.forward * cosine + (_pose.right * right + _pose.up * up) * (halfPi * sineByTheta);
        return true;
    }

    struct Point {
        float x = 0;
        float y = 0;
    };

    /// Where a point of the room appears.
    Point project(Vec3 point) const {
        const Vec3 way = point - _pose.eye;
        const float right = dot(way, _pose.right);
        const float up = dot(way, _pose.up);
        const float across = std::sqrt(right * right + up * up);
        const float theta = std::atan2(across, dot(way, _pose.forward));
        const float scale = across > 0 ? theta * pixelsPerRadian() / across : 0;
        return {_centreX + right * scale, _centreY - up * scale};
    }

    /// Radius in pixels of a small ball around the point. Tangentially this lens magnifies by theta / sin(theta).
    float projectRadius(Vec3 middle, float radius) const {
        const Vec3 way = middle - _pose.eye;
        const float distance = length(way);
        const float theta = std::acos(dot(way, _pose.forward) / distance);
        const float across = theta > 0.01f ? theta / std::sin(theta) : 1;
        return across * std::asin(radius / distance) * pixelsPerRadian();
    }

    float pixelsPerRadian() const { return _radius / halfPi; }
    int width() const { return _width; }
    int height() const { return _height; }
    const CameraPose& pose() const { return _pose; }

private:
    static constexpr float halfPi = 1.57079633f;

    /// Taylor series in the square of a: cos(a) up to the even power `last`, or sin(a) / a up to the power `last` - 1.
    /// With the powers in use it is exact in float up to 90 degrees, and far quicker than the library's.
    static constexpr float series(float square, int last) {
        float sum = 1;
        for (int n = last; n >= 2; n -= 2) sum = 1 - square * (1.0f / static_cast<float>(n * (n - 1))) * sum;
        return sum;
    }

    CameraPose _pose;
    int _width;
    int _height;
    float _centreX;
    float _centreY;
    float _radius;
};

}  // namespace zetplay
